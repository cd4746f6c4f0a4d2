#include "tests/support/windows/named_event.h"

#include <windows.h>

#include <stdexcept>

namespace zorvel {
namespace test {

NamedEvent::NamedEvent(const std::string& name) : m_handle(CreateEventA(nullptr, FALSE, FALSE, name.c_str()))
{
    if (!m_handle)
        throw std::runtime_error("no event is called " + name);
}

NamedEvent::~NamedEvent()
{
    CloseHandle(m_handle);
}

}  // namespace test
}  // namespace zorvel
