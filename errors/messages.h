#pragma once

#include <cstdint>
#include <iosfwd>

/// The numbered messages of the library.
enum zvMessageId : std::uint32_t
{
    ZORVEL_SEM_NAME_TOO_LONG = 0x4e0001,
    ZORVEL_SEM_OPEN_FAILED = 0x4e0002,
    ZORVEL_SEM_CLOSE_FAILED = 0x4e0003,
    ZORVEL_SEM_UNLINK_FAILED = 0x4e0004,
    ZORVEL_SEM_UNLINK_ZOMBIE_FAILED = 0x4e0005,
    ZORVEL_SEM_GETVALUE_FAILED = 0x4e0006,
    ZORVEL_SEM_GETVALUE_NOT_IMPLEMENTED = 0x4e0007,
    ZORVEL_SEM_POST_FAILED = 0x4e0008,
    ZORVEL_SEM_TRYWAIT_FAILED = 0x4e0009,
    ZORVEL_SEM_WAIT_FAILED = 0x4e000a,
    ZORVEL_SEM_WAIT_TIMED_OUT = 0x4e000b,
    ZORVEL_SEM_WAIT_ABANDONED = 0x4e000c,
    ZORVEL_SEM_INVALID_RETURN_VALUE = 0x4e000d,
    ZORVEL_SEM_OP_UNSUPPORTED = 0x4e000e,
    ZORVEL_SYS_CALL_FAILED = 0x4e000f,
};

namespace zorvel {
namespace errors {

/// What emitting needs to remember. Zero-initialised but for the routine.
struct MessageEmitter
{
    char text[2048];
    unsigned char isRegistered;
    int (*registerTables)();
};

/// The library's own. It is shared without a lock, deliberately: callers
/// serialise where mixed texts matter.
extern MessageEmitter messageEmitter;

/// Formats a message, writes it with a line feed to a stream and flushes it. The
/// first call registers the message tables. Arguments are const char* and int,
/// as the English text of the message asks for.
///
/// n + 2 for n bytes of text. When n is below 1 formatting failed: n + 1, and
/// the stream is left alone. A text that does not fit the buffer with the line
/// feed is cut at the end of a character.
int emitMessage(MessageEmitter& emitter, std::ostream& stream, std::uint32_t identifier, ...);

/// Registers the library's messages, in English and Japanese; 0.
int registerMessages();

/// Takes them back; 0. Nothing in the library calls it: it stands beside the
/// other for a suite that unloads its parts.
int removeMessages();

}  // namespace errors
}  // namespace zorvel
