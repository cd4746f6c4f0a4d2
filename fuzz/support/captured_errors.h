#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace zorvel {
namespace fuzz {

/// What is written to std::cerr during its life goes to a text.
class CapturedErrors
{
public:
    CapturedErrors() : m_previous(std::cerr.rdbuf(&m_buffer)) {}
    ~CapturedErrors() { std::cerr.rdbuf(m_previous); }

    CapturedErrors(const CapturedErrors&) = delete;
    CapturedErrors& operator=(const CapturedErrors&) = delete;

    /// What was written since it was asked last.
    std::string text()
    {
        const std::string text = m_buffer.str();
        m_buffer.str("");
        return text;
    }

private:
    std::stringbuf m_buffer;
    std::streambuf* m_previous;
};

}  // namespace fuzz
}  // namespace zorvel
