#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace zorvel {
namespace test {

/// Catches what is written to std::cerr for as long as it lives.
class CaughtErrors
{
public:
    CaughtErrors() : m_before(std::cerr.rdbuf(m_caught.rdbuf())) {}
    ~CaughtErrors() { std::cerr.rdbuf(m_before); }

    CaughtErrors(const CaughtErrors&) = delete;
    CaughtErrors& operator=(const CaughtErrors&) = delete;

    /// All since the last time.
    std::string take()
    {
        const std::string text = m_caught.str();
        m_caught.str(std::string());
        return text;
    }

private:
    std::ostringstream m_caught;
    std::streambuf* const m_before;
};

}  // namespace test
}  // namespace zorvel
