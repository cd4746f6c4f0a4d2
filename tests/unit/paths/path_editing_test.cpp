#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>

using namespace zorvel::test;

namespace {

/// A heap buffer that holds the text and exactly `spare` bytes more.
class Buffer
{
public:
    Buffer(const std::string& text, std::size_t spare) : m_bytes(new char[text.size() + 1 + spare])
    {
        std::memcpy(m_bytes.get(), text.c_str(), text.size() + 1);
    }
    char* get() { return m_bytes.get(); }

private:
    std::unique_ptr<char[]> m_bytes;
};

std::string added(const std::string& text)
{
    Buffer buffer(text, 1);
    EXPECT_TRUE(zvAddPathSep(buffer.get()));
    return buffer.get();
}

std::string addedAt(const std::string& text, int index, int result)
{
    Buffer buffer(text, 1);
    EXPECT_EQ(result, zvAddPathSepAt(buffer.get(), index)) << text << " at " << index;
    return buffer.get();
}

std::string replaced(const std::string& text, char c)
{
    Buffer buffer(text, 0);
    zvReplacePathSeps(buffer.get(), c);
    return std::string(buffer.get(), text.size());
}

std::string washed(const std::string& text)
{
    Buffer buffer(text, 0);
    zvWashPathSep(buffer.get());
    return buffer.get();
}

}  // namespace

TEST(PathEditing, AddSeparator)
{
    EXPECT_EQ("\\", added(""));
    EXPECT_EQ("C:\\dir\\", added("C:\\dir"));
    EXPECT_EQ("C:\\dir\\", added("C:\\dir/"));
    EXPECT_EQ("C:\\dir\\", added("C:\\dir\\"));
    EXPECT_EQ("\\", added("/"));
    EXPECT_EQ("a/\\", added("a//"));
    EXPECT_FALSE(zvAddPathSep(nullptr));
}

TEST(PathEditing, AddSeparatorLooksAtTheLastByteAlone)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ("a\x95\x5C", added("a\x95\x5C"));
    EXPECT_EQ("a\x95\x5C", added("a\x95/"));
}

TEST(PathEditing, AddSeparatorNeedsNoRoomWhereOneStands)
{
    Buffer full("dir/", 0);
    EXPECT_TRUE(zvAddPathSep(full.get()));
    EXPECT_STREQ("dir\\", full.get());
}

/// Text that must not be written to: on most systems it ends the process.
static const char constantText[] = "C:\\dir\\";

TEST(PathEditing, AddSeparatorWritesNothingWhereOneStands)
{
    EXPECT_TRUE(zvAddPathSep(const_cast<char*>(constantText)));
    EXPECT_STREQ("C:\\dir\\", constantText);
}

TEST(PathEditing, AddSeparatorAt)
{
    EXPECT_EQ("abc\\", addedAt("abc", 3, 1));
    EXPECT_EQ("ab\\c", addedAt("ab\\c", 3, 0));
    EXPECT_EQ("ab/c", addedAt("ab/c", 3, 0));
    EXPECT_EQ("\\abc", addedAt("abc", 0, 1));
    EXPECT_EQ("\\\\abc", addedAt("\\abc", 0, 1));
    EXPECT_EQ("a\\bc", addedAt("abc", 1, 1));
    EXPECT_EQ("a\\\\bc", addedAt("a\\bc", 1, 1));
    EXPECT_EQ("\\", addedAt("", 0, 1));
}

TEST(PathEditing, AddSeparatorAtRefusesWhatLiesOutside)
{
    EXPECT_EQ("abc", addedAt("abc", 4, 0));
    EXPECT_EQ("abc", addedAt("abc", INT_MAX, 0));
    EXPECT_EQ("abc", addedAt("abc", -1, 0));
    EXPECT_EQ("abc", addedAt("abc", INT_MIN, 0));
    EXPECT_EQ("", addedAt("", 1, 0));
    EXPECT_EQ(0, zvAddPathSepAt(nullptr, 0));
}

TEST(PathEditing, ReplaceSeparators)
{
    EXPECT_EQ("C:!a!b!", replaced("C:\\a/b\\", '!'));
    EXPECT_EQ("abc", replaced("abc", '!'));
    EXPECT_EQ("", replaced("", '!'));
    EXPECT_EQ(std::string("a\0b\0", 4), replaced("a/b\\", '\0'));
    zvReplacePathSeps(nullptr, '!');
}

TEST(PathEditing, WashSeparators)
{
    EXPECT_EQ("\\\\a\\b\\", washed("//a\\b/"));
    EXPECT_EQ("abc", washed("abc"));
    EXPECT_EQ("", washed(""));
    zvWashPathSep(nullptr);
}

TEST(PathEditing, RewritingGoesByteByByte)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ("\x95!", replaced("\x95\x5C", '!'));
    EXPECT_EQ("\x95\x5C", washed("\x95/"));
}
