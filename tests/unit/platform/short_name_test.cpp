#include "platform/posix/short_name.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

using zorvel::platform::ShortName;

namespace {

const char* const texts[] = {"",
                             "U",
                             "UTF-8",
                             "UTF-7",
                             "UTF-",
                             "UTF-80",
                             "EUC-JP",
                             "EUC-JP-MS",
                             "WINDOWS-31J",
                             "SHIFT_JIS",
                             "SHIFT_JISX0213",
                             "SHIFT_JISX0214",
                             "BIG5",
                             "BIG5-HKS",
                             "EUC-JISX0213",
                             "ANSI_X3.4-1968",
                             "a name that is longer than any"};

/// Memory that ends where a page does, and nobody may read on.
class Page
{
public:
    static const std::size_t size = 4096;

    Page() : m_bytes(static_cast<char*>(std::aligned_alloc(size, size)), &std::free)
    {
        std::memset(m_bytes.get(), 'x', size);
    }

    /// A copy of a text that ends so many bytes before the end.
    const char* put(const char* text, std::size_t before)
    {
        const std::size_t length = std::strlen(text) + 1;
        return static_cast<const char*>(std::memcpy(m_bytes.get() + size - before - length, text, length));
    }

private:
    const std::unique_ptr<char, void (*)(void*)> m_bytes;
};

}  // namespace

TEST(ShortName, IsEqualToThatTextAloneWhereverItLies)
{
    for (const char* name : texts) {
        if (std::strlen(name) > 15)
            continue;
        const ShortName expected(name);
        for (const char* text : texts) {
            for (std::size_t before = 0; before < 40; ++before) {
                Page page;
                EXPECT_EQ(std::strcmp(name, text) == 0, expected.is(page.put(text, before)))
                    << name << " " << text << " " << before;
            }
        }
    }
}

TEST(ShortName, TakesNoLongerName)
{
    EXPECT_NO_THROW(ShortName("123456789012345"));
    EXPECT_THROW(ShortName("1234567890123456"), std::length_error);
}
