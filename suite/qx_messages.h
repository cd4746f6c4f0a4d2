#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

/// The suite's numbered messages. A message has the number of its facility in
/// the upper 16 bits of its identifier. Tables stay the caller's and must
/// outlive their registration. Thread-safe.

struct _memory_context;
struct _message_context;

/// The messages of a facility in English.
struct qx_message_table
{
    std::uint32_t count;
    std::uint32_t facility;
    const std::uint32_t* identifiers;  ///< `count` of them and 0xFFFFFFFF behind
    const char* const* names;
    const char* const* texts;  ///< printf-style, with %s, %d and %%
    const char* extraText;
};

/// The same messages in another language.
struct qx_language_table
{
    std::uint32_t facility;
    std::uint32_t reserved;  ///< 0xFFFFFFFF
    const std::uint32_t* identifiers;
    const char* const* texts;  ///< code page 932, with %1 to %9 for the arguments
};

/// With which message tables are registered.
_memory_context* qxGetMemoryContext();

/// With which messages are formatted.
_message_context* qxGetMessageContext();

/// Registers the English table of a facility, in place of one from before. 0,
/// or -1 for null.
int qx_mem_add_primary_message_table(_memory_context* context, const qx_message_table* table);

/// Registers a translation of a facility's messages into a language ("ja"). 0,
/// or -1 for null.
int qx_mem_add_language(_memory_context* context, const char* language, const qx_language_table* table);

/// Removes a facility's English table and its translations: 0, or -1 for one
/// that is not registered.
int qx_mem_remove_primary_message_table(_memory_context* context, const qx_message_table* table);

/// Formats a message in the language of the system's user, if there is a
/// translation and the code page of the output can show it, else in English.
/// The types of the arguments are those of the English text in both cases; a
/// null string is shown as "(null)". A text that does not fit is cut at the end
/// of a character.
///
/// The number of bytes written, without the terminator. 0 or less, and the
/// buffer is of no use, for an identifier that is not registered, a text with
/// other conversions, a null or empty buffer.
int qx_vsprintm(_message_context* context, char* buffer, std::size_t size, std::uint32_t identifier,
                std::va_list arguments);
