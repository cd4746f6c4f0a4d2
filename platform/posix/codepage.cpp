#include "platform/codepage.h"

#include <cstring>
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

/// The lead bytes of a family of codesets, in at most three ranges.
struct Codeset
{
    const char* name;
    Range ranges[3];
};

const Range none = {1, 0};

/// Names as nl_langinfo gives them, in capitals, and the usual aliases.
///
/// In EUC-JP 0x8F announces two more bytes. It counts as a single byte here, so
/// that those two form the pair and the next character is met at its beginning.
/// The four-byte characters of GB18030 and EUC-TW read as two pairs.
const Codeset doubleByteCodesets[] = {
    {"SHIFT_JIS", {{0x81, 0x9F}, {0xE0, 0xFC}, none}},
    {"SHIFT_JISX0213", {{0x81, 0x9F}, {0xE0, 0xFC}, none}},
    {"SJIS", {{0x81, 0x9F}, {0xE0, 0xFC}, none}},
    {"WINDOWS-31J", {{0x81, 0x9F}, {0xE0, 0xFC}, none}},
    {"CP932", {{0x81, 0x9F}, {0xE0, 0xFC}, none}},
    {"GBK", {{0x81, 0xFE}, none, none}},
    {"CP936", {{0x81, 0xFE}, none, none}},
    {"GB18030", {{0x81, 0xFE}, none, none}},
    {"UHC", {{0x81, 0xFE}, none, none}},
    {"CP949", {{0x81, 0xFE}, none, none}},
    {"JOHAB", {{0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9}}},
    {"BIG5", {{0x81, 0xFE}, none, none}},
    {"BIG5-HKSCS", {{0x81, 0xFE}, none, none}},
    {"CP950", {{0x81, 0xFE}, none, none}},
    {"EUC-JP", {{0x8E, 0x8E}, {0xA1, 0xFE}, none}},
    {"EUC-JP-MS", {{0x8E, 0x8E}, {0xA1, 0xFE}, none}},
    {"EUC-JISX0213", {{0x8E, 0x8E}, {0xA1, 0xFE}, none}},
    {"EUC-TW", {{0x8E, 0x8E}, {0xA1, 0xFE}, none}},
    {"EUC-KR", {{0xA1, 0xFE}, none, none}},
    {"EUC-CN", {{0xA1, 0xFE}, none, none}},
    {"GB2312", {{0xA1, 0xFE}, none, none}},
};

bool isLeadByteOf(const Codeset& codeset, unsigned char byte)
{
    for (const Range& range : codeset.ranges)
    {
        if (range.first <= byte && byte <= range.last)
            return true;
    }
    return false;
}

/// The two codesets that nearly every process runs in: no need to search.
bool isKnownSingleByte(const char* name)
{
    return std::strcmp(name, "UTF-8") == 0 || strcasecmp(name, "ANSI_X3.4-1968") == 0;
}

}  // namespace

/// The codeset is asked for each time: the application may change its locale.
bool isLeadByte(unsigned char byte)
{
    if (byte < 0x80)
        return false;
    const char* const name = nl_langinfo(CODESET);
    if (isKnownSingleByte(name))
        return false;
    for (const Codeset& codeset : doubleByteCodesets)
    {
        if (std::strcmp(name, codeset.name) == 0)
            return isLeadByteOf(codeset, byte);
    }
    return false;
}

std::size_t wholeCharacters(const char* text, std::size_t limit)
{
    const std::size_t cutOff = static_cast<std::size_t>(-2);
    std::size_t whole = 0;
    while (whole < limit)
    {
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
