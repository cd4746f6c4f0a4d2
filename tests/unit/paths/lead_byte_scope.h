#pragma once

#include <zorvel/paths.h>

namespace zorvel {
namespace test {

/// Installs a lead-byte test for a scope, so that double-byte cases run
/// whatever the code page of the process is.
class LeadByteScope
{
public:
    explicit LeadByteScope(zvMultiByteLeadTest test) : m_previous(zvSetIsMultiByteLead(test)) {}
    ~LeadByteScope() { zvSetIsMultiByteLead(m_previous); }

    LeadByteScope(const LeadByteScope&) = delete;
    LeadByteScope& operator=(const LeadByteScope&) = delete;

private:
    zvMultiByteLeadTest m_previous;
};

/// The lead bytes of code page 932. 0x95 0x5C is one character of it.
inline bool isLead932(unsigned char byte)
{
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

inline bool isNoLead(unsigned char)
{
    return false;
}

}  // namespace test
}  // namespace zorvel
