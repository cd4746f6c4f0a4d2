#pragma once

#include <string>

/// Texts as UTF-8, converted by the system without the library. Bytes that are
/// no text of the code page, a split character among them, throw
/// std::runtime_error.
namespace zorvel {
namespace test {

std::string utf8FromCodePage932(const std::string& text);

/// From the multibyte code page of the process (Linux: the codeset of the
/// current locale).
std::string utf8FromProcessCodePage(const std::string& text);

}  // namespace test
}  // namespace zorvel
