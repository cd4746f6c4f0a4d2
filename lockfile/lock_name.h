#pragma once

#include <string>

namespace zorvel {

/// Whether a name or directory holds a NUL. The system would cut it there and
/// mean another file, so nothing may be done to it.
inline bool holdsNul(const std::string& name)
{
    return name.find('\0') != std::string::npos;
}

}  // namespace zorvel
