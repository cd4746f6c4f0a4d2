#pragma once

#include "errors/messages.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// One message as it is to be, in UTF-8.
struct MessageText
{
    std::uint32_t identifier;
    const char* name;
    const char* types;     ///< of its arguments: 's' and 'd'
    const char* english;   ///< with %s and %d
    const char* japanese;  ///< with %1, %2, %3
};

extern const MessageText messageTexts[15];

/// The arguments with which emitSample() emits a message, as text.
std::vector<std::string> sampleArguments(const MessageText& message);

/// A text with its %s and %d, or its %1 to %9, replaced.
std::string fillIn(const char* text, const std::vector<std::string>& arguments);

/// The whole message in English and in Japanese, in UTF-8.
std::string sampleInEnglish(const MessageText& message);
std::string sampleInJapanese(const MessageText& message);

int emitSample(errors::MessageEmitter& emitter, std::ostream& stream, const MessageText& message);

}  // namespace test
}  // namespace zorvel
