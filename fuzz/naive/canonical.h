#pragma once

#include "fuzz/naive/separators.h"

namespace zorvel {
namespace naive {

/// The pieces of a text between separator bytes; only `separator` counts, and
/// only where it is a character of its own.
std::vector<std::string> split(const std::string& text, char separator, LeadTest isLead);

std::string together(const std::vector<std::string>& pieces, char separator);

/// "." and ".." removed as the path service does. Only '\' separates; empty
/// names count as names; empty for a text that is too long.
std::string collapsed(const std::string& text, LeadTest isLead);

/// A library path as the system reads it: '\' that is a character of its own
/// is '/'.
std::string nativePath(const std::string& path, LeadTest isLead);

/// The absolute form of a path by text, '\' between the names; empty where
/// there is none. `directory` is the current one, in the system's form.
std::string fullPath(const std::string& path, const std::string& directory, LeadTest isLead);

bool isSpace(char byte);

/// What zvCanonicalizePath gives.
struct Canonical
{
    bool written;            ///< `text` is in the caller's buffer
    std::string text;        ///< what the returned pointer leads to
    bool dependsOnNextByte;  ///< the byte behind the input decides
};

/// memory: what can be read from the input's first byte on, its own terminator
/// included; length: of the input. size: of the buffer, 0 for none.
Canonical canonicalized(const std::string& memory, std::size_t length, std::size_t size, const std::string& directory,
                        LeadTest isLead);

}  // namespace naive
}  // namespace zorvel
