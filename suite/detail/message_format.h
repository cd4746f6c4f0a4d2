#pragma once

#include "suite/detail/text_buffer.h"

#include <cstdarg>
#include <string>
#include <vector>

namespace zorvel {
namespace suite {

/// The arguments of a message as texts, read with the types that the English
/// text gives them (%s, %d). False for a text with any other conversion.
bool readArguments(const char* english, std::va_list arguments, std::vector<std::string>& texts);

/// Puts the arguments into an English text, one after another.
std::string fillInOrder(const char* english, const std::vector<std::string>& arguments);

/// Writes an English text with its arguments, one after another, read with the
/// types that it gives them. False for a text with any other conversion; what
/// is in the buffer then is of no use.
bool writeInOrder(const char* english, std::va_list arguments, TextBuffer& buffer);

/// Whether every '%' of a translation is followed by a number (%1 to %9) or by
/// another '%'.
bool isTranslation(const char* text);

/// Puts the arguments into a translation, by number. A number without an
/// argument stands for nothing.
std::string fillByNumber(const char* translation, const std::vector<std::string>& arguments);

}  // namespace suite
}  // namespace zorvel
