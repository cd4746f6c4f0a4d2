#pragma once

#include <string>

/// In which language and which bytes texts are to be shown. In an object file
/// of its own, so that a test program can link another. Thread-safe.
namespace zorvel {
namespace platform {

/// The language of the user as its two or three letters ("en", "ja"). Windows:
/// that of the system's user interface. Linux: that of the locale's messages
/// (the first of LANGUAGE where that is set and the locale is not "C").
std::string userLanguage();

/// Converts a text from code page 932 into the bytes that the output shows.
/// Windows: the ANSI code page; a console that shows another one counts as not
/// able. Linux: the locale's codeset. False, and the result of no use, when not
/// all of it can be shown.
bool fromCodePage932(const char* text, std::string& result);

}  // namespace platform
}  // namespace zorvel
