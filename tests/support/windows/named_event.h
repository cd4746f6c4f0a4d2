#pragma once

#include <string>

namespace zorvel {
namespace test {

/// An event object that has a name for as long as it lives.
class NamedEvent
{
public:
    explicit NamedEvent(const std::string& name);
    ~NamedEvent();
    NamedEvent(const NamedEvent&) = delete;
    NamedEvent& operator=(const NamedEvent&) = delete;

private:
    void* const m_handle;
};

}  // namespace test
}  // namespace zorvel
