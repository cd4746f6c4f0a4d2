#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zorvel {
namespace zvlock {

/// Text as the system hands it to a program: bytes, or wide characters where a
/// code page would lose some.
using NativeText = std::filesystem::path::string_type;

/// The program's arguments without its own name, as they were given: on Windows
/// they are taken from the command line, no wild card is expanded in them.
std::vector<NativeText> argumentsOf(int argc, char** argv);

/// In the process's code page, for the library and for messages. What the code
/// page lacks becomes a question mark, which is in no file's name on Windows.
std::string inCodePage(const NativeText& text);

}  // namespace zvlock
}  // namespace zorvel
