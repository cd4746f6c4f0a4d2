#include "errors/messages.h"

#include "platform/codepage.h"
#include "suite/qx_messages.h"

#include <cstdarg>
#include <ostream>

namespace zorvel {
namespace errors {
namespace {

/// The line feed and its terminator take the place of the text's last
/// character where there is no room behind it. Returns the text's length.
int appendLineFeed(MessageEmitter& emitter, int length)
{
    const std::size_t room = sizeof emitter.text - 2;
    std::size_t kept = static_cast<std::size_t>(length);
    if (kept > room)
        kept = platform::wholeCharacters(emitter.text, room);
    emitter.text[kept] = '\n';
    emitter.text[kept + 1] = '\0';
    return static_cast<int>(kept);
}

}  // namespace

MessageEmitter messageEmitter = {{}, 0, &registerMessages};

int emitMessage(MessageEmitter& emitter, std::ostream& stream, std::uint32_t identifier, ...)
{
    if (!emitter.isRegistered && emitter.registerTables) {
        emitter.registerTables();
        emitter.isRegistered = 1;
    }
    std::va_list arguments;
    va_start(arguments, identifier);
    const int length = qx_vsprintm(qxGetMessageContext(), emitter.text, sizeof emitter.text, identifier, arguments);
    va_end(arguments);
    if (length < 1)
        return length + 1;
    const int written = appendLineFeed(emitter, length);
    // Not <<, which would fill up to a width that the application left in the stream.
    stream.write(emitter.text, written + 1).flush();
    return written + 2;
}

}  // namespace errors
}  // namespace zorvel
