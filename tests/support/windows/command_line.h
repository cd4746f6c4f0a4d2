#pragma once

#include <string>
#include <vector>

namespace zorvel {
namespace test {
namespace native {

/// Text of the process's code page in wide characters.
std::wstring wide(const std::string& text);

/// One line that the runtime's parser splits into the arguments again. It is
/// put together in wide characters: the child parses it so, and a trail byte
/// 0x5C must not be taken for a backslash.
std::wstring commandLine(const std::vector<std::wstring>& arguments);

}  // namespace native
}  // namespace test
}  // namespace zorvel
