#pragma once

#include "suite/qx_messages.h"

#include <string>
#include <vector>

/// What the library asks of the suite's message facility.
namespace zorvel {
namespace test {
namespace facility_calls {

struct Format
{
    _message_context* context;
    char* buffer;
    std::size_t size;
    std::uint32_t identifier;
    int result;
};

struct Record
{
    /// "add primary", "add ja", "remove primary", in order.
    std::vector<std::string> registrations;
    std::vector<_memory_context*> contexts;
    const qx_message_table* primary = nullptr;
    const qx_language_table* language = nullptr;
    std::vector<Format> formats;
};

/// Everything since reset(). The calls reach the facility, ...
Record& record();
void reset();

/// ... but for formatting while this lives: it writes the text and returns the
/// result.
class FormatAnswer
{
public:
    FormatAnswer(int result, const std::string& text);
    ~FormatAnswer();
    FormatAnswer(const FormatAnswer&) = delete;
    FormatAnswer& operator=(const FormatAnswer&) = delete;
};

}  // namespace facility_calls
}  // namespace test
}  // namespace zorvel
