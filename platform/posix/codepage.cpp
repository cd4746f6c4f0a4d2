#include "platform/codepage.h"

#include "platform/posix/short_name.h"

#include <atomic>
#include <cstdint>
#include <cwchar>

#include <langinfo.h>

namespace zorvel {
namespace platform {
namespace {

struct Range
{
    unsigned char first;
    unsigned char last;
};

constexpr Range none = {1, 0};

constexpr void add(LeadBytes& table, const Range& range)
{
    for (unsigned byte = range.first; byte <= range.last; ++byte) {
        table.of[byte] = true;
        table.any = true;
    }
}

/// The lead bytes of a family of codesets, in at most three ranges.
constexpr LeadBytes in(Range first, Range second = none, Range third = none)
{
    LeadBytes table = {};
    add(table, first);
    add(table, second);
    add(table, third);
    return table;
}

constexpr LeadBytes ofNone = in(none);
constexpr LeadBytes ofShiftJis = in({0x81, 0x9F}, {0xE0, 0xFC});
constexpr LeadBytes ofEucJp = in({0x8E, 0x8E}, {0xA1, 0xFE});
constexpr LeadBytes ofEuc = in({0xA1, 0xFE});
constexpr LeadBytes ofJohab = in({0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9});
constexpr LeadBytes ofOthers = in({0x81, 0xFE});

struct Codeset
{
    ShortName name;
    const LeadBytes& leads;
};

/// Names as nl_langinfo gives them, in capitals, and the usual aliases; first the one that nearly every process has.
///
/// In EUC-JP 0x8F announces two more bytes. It counts as a single byte here, so
/// that those two form the pair and the next character is met at its beginning.
/// The four-byte characters of GB18030 and EUC-TW read as two pairs.
constexpr Codeset codesets[] = {
    {"UTF-8", ofNone},    {"ANSI_X3.4-1968", ofNone},  {"SHIFT_JIS", ofShiftJis}, {"SHIFT_JISX0213", ofShiftJis},
    {"SJIS", ofShiftJis}, {"WINDOWS-31J", ofShiftJis}, {"CP932", ofShiftJis},     {"GBK", ofOthers},
    {"CP936", ofOthers},  {"GB18030", ofOthers},       {"UHC", ofOthers},         {"CP949", ofOthers},
    {"JOHAB", ofJohab},   {"BIG5", ofOthers},          {"BIG5-HKSCS", ofOthers},  {"CP950", ofOthers},
    {"EUC-JP", ofEucJp},  {"EUC-JP-MS", ofEucJp},      {"EUC-JISX0213", ofEucJp}, {"EUC-TW", ofEucJp},
    {"EUC-KR", ofEuc},    {"EUC-CN", ofEuc},           {"GB2312", ofEuc},
};

/// Where the name was found the last time: most processes have one codeset.
std::atomic<const Codeset*> lastFound(codesets);

__attribute__((noinline)) const LeadBytes& find(const char* name)
{
    for (const Codeset& codeset : codesets) {
        if (!codeset.name.is(name))
            continue;
        lastFound.store(&codeset, std::memory_order_relaxed);
        return codeset.leads;
    }
    return ofNone;
}

}  // namespace

/// The codeset is asked for each time: the application may change its locale.
const LeadBytes& allLeadBytes()
{
    const char* const name = nl_langinfo(CODESET);
    const Codeset& known = *lastFound.load(std::memory_order_relaxed);
    return known.name.is(name) ? known.leads : find(name);
}

bool isLeadByte(unsigned char byte)
{
    return byte >= 0x80 && allLeadBytes().of[byte];
}

/// The C library keeps with each locale whether there is more to letter case in
/// it than ASCII, for the same use. Only the low half of the answer is the
/// number; the rest of the pointer is nothing.
std::uintptr_t lettersBeyondAscii()
{
    return reinterpret_cast<std::uintptr_t>(nl_langinfo(_NL_CTYPE_NONASCII_CASE));
}

/// By the table of the current locale, as tolower() does. (What isalpha() and its like read is a table of the
/// thread's own, which another thread's setlocale() does not change.) It begins with the values of negative numbers.
const std::int32_t* lowerTable()
{
    return reinterpret_cast<const std::int32_t*>(nl_langinfo(_NL_CTYPE_TOLOWER));
}

std::size_t wholeCharacters(const char* text, std::size_t limit)
{
    const std::size_t cutOff = static_cast<std::size_t>(-2);
    std::size_t whole = 0;
    while (whole < limit) {
        std::mbstate_t state = std::mbstate_t();
        const std::size_t length = std::mbrlen(text + whole, limit - whole, &state);
        if (length == cutOff)
            break;
        whole += length == 0 || length > limit - whole ? 1 : length;
    }
    return whole;
}

}  // namespace platform
}  // namespace zorvel
