#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

using namespace zorvel::test;

namespace {

const std::size_t npos = std::string::npos;

std::string bytes(const std::string& text)
{
    return text;
}

/// Records what it is asked for, and may refuse.
class RecordingNormalizer : public zvStringNormalizer<zvPathString>
{
public:
    explicit RecordingNormalizer(bool refuse = false) : m_refuse(refuse) {}

    void assignNormalized(zvPathString& target, const char* text, std::size_t length) override
    {
        m_calls += "assign(" + std::string(text, length) + ")";
        if (m_refuse)
            throw std::runtime_error("refused");
        target.assign(("<" + std::string(text, length) + ">").c_str());
    }

    void normalize(zvPathString& target) override
    {
        m_calls += "normalize(" + bytes(target) + ")";
        if (m_refuse)
            throw std::runtime_error("refused");
    }

    const std::string& calls() const { return m_calls; }

private:
    bool m_refuse;
    std::string m_calls;
};

}  // namespace

TEST(PathString, BeginsEmptyAndNormalises)
{
    zvPathString path;
    EXPECT_EQ("", bytes(path));
    path.assign("a//b ");
    EXPECT_EQ("a\\b", bytes(path));
}

TEST(PathString, EveryAssignmentGoesThroughTheNormaliser)
{
    zvPathString path(" a/b ");
    EXPECT_EQ("a\\b", bytes(path));
    EXPECT_EQ("a\\b", bytes(zvPathString(std::string(" a/b "))));
    path = " c/d ";
    EXPECT_EQ("c\\d", bytes(path));
    path = std::string(" e/f ");
    EXPECT_EQ("e\\f", bytes(path));
    path.assign("g/hij", 3);
    EXPECT_EQ("g\\h", bytes(path));
    path.assign("");
    EXPECT_EQ("", bytes(path));
}

TEST(PathString, APlainStringIsNormalisedWhereverItIsAssigned)
{
    zvPathString path;
    path.assign(std::string(" a/b "));
    EXPECT_EQ("a\\b", bytes(path));
    path.assign(std::string("c\0/d", 4));
    EXPECT_EQ(std::string("c\0\\d", 4), bytes(path));
    path.assign(static_cast<const std::string&>(path));
    EXPECT_EQ(std::string("c\0\\d", 4), bytes(path));
}

TEST(PathString, NullIsTheEmptyText)
{
    zvPathString path("a");
    path.assign(nullptr);
    EXPECT_EQ("", bytes(path));
    path = "a";
    path.assign(nullptr, 5);
    EXPECT_EQ("", bytes(path));
    path = "a";
    path = static_cast<const char*>(nullptr);
    EXPECT_EQ("", bytes(path));
    EXPECT_EQ("", bytes(zvPathString(static_cast<const char*>(nullptr))));
}

TEST(PathString, TextMayLieInsideTheString)
{
    zvPathString path("C:\\dir\\name");
    path.assign(path.c_str() + 3);
    EXPECT_EQ("dir\\name", bytes(path));
    path.assign(path.c_str(), path.size());
    EXPECT_EQ("dir\\name", bytes(path));
}

TEST(PathString, ComparesByCharacter)
{
    EXPECT_TRUE(zvPathString("C:/Temp") == "c:\\TEMP");
    EXPECT_TRUE(zvPathString("a") != zvPathString("b"));
}

TEST(PathString, OwnNormaliserIsUsedForEachText)
{
    const auto recorder = boost::make_shared<RecordingNormalizer>();
    zvPathString path("a//b");
    path.setNormalizer(recorder);
    EXPECT_EQ("a\\b", bytes(path));
    path.assign("c//d ");
    EXPECT_EQ("<c//d >", bytes(path));
    EXPECT_EQ("assign(c//d )", recorder->calls());
}

TEST(PathString, EmptyPointerBringsTheStandardNormaliserBack)
{
    zvPathString path;
    path.setNormalizer(boost::make_shared<RecordingNormalizer>());
    path.assign("a//b ");
    EXPECT_EQ("<a//b >", bytes(path));
    path.setNormalizer(zvPathString::normalizer_ptr());
    EXPECT_EQ("<a//b >", bytes(path));
    path.assign("a//b ");
    EXPECT_EQ("a\\b", bytes(path));
}

TEST(PathString, NormaliserComesBackAfterAnException)
{
    const auto refusing = boost::make_shared<RecordingNormalizer>(true);
    zvPathString path("old");
    path.setNormalizer(refusing);
    EXPECT_THROW(path.assign("x"), std::runtime_error);
    EXPECT_EQ("old", bytes(path));
    EXPECT_THROW(path.assign("y"), std::runtime_error);
    EXPECT_THROW(path.join({"z"}), std::runtime_error);
    EXPECT_THROW(path.assign("w"), std::runtime_error);
    EXPECT_EQ("assign(x)assign(y)normalize(old\\z)assign(w)", refusing->calls());
}

TEST(PathString, NormalisersAreSharedAndReleased)
{
    const auto recorder = boost::make_shared<RecordingNormalizer>();
    {
        zvPathString path;
        path.setNormalizer(recorder);
        const zvPathString copy(path);
        EXPECT_EQ(3, recorder.use_count());
        path.assign("a");
        EXPECT_EQ(3, recorder.use_count());
    }
    EXPECT_EQ(1, recorder.use_count());
}

TEST(PathString, CopiesShareTextAndNormaliser)
{
    const auto recorder = boost::make_shared<RecordingNormalizer>();
    zvPathString original;
    original.setNormalizer(recorder);
    original.assign("a//b");
    zvPathString copy(original);
    EXPECT_EQ("<a//b>", bytes(copy));
    zvPathString assigned("x");
    assigned = original;
    EXPECT_EQ("<a//b>", bytes(assigned));
    EXPECT_EQ("assign(a//b)", recorder->calls());
    copy.assign("c");
    assigned.assign("d");
    EXPECT_EQ("assign(a//b)assign(c)assign(d)", recorder->calls());
    copy.setNormalizer(zvPathString::normalizer_ptr());
    copy.assign("e//f");
    EXPECT_EQ("e\\f", bytes(copy));
    EXPECT_EQ("<a//b>", bytes(original));
}

TEST(PathString, NormaliserMayBeCalledDirectly)
{
    zvWellFormedPathNormalizer<zvPathString> normalizer;
    const auto recorder = boost::make_shared<RecordingNormalizer>();
    zvPathString path;
    path.setNormalizer(recorder);
    normalizer.assignNormalized(path, " a//b ", 6);
    EXPECT_EQ("a\\b", bytes(path));
    EXPECT_EQ("", recorder->calls());
    path.append("//c");
    normalizer.normalize(path);
    EXPECT_EQ("a\\b\\c", bytes(path));
}

TEST(PathString, EverythingElseIsTheStandardStrings)
{
    zvPathString path("abc");
    path.append("//d");
    EXPECT_EQ("abc//d", bytes(path));
    path.erase(3);
    EXPECT_EQ(3u, path.length());
    EXPECT_STREQ("abc", path.c_str());
}

TEST(PathStringFind, ByCharacterFromAnIndex)
{
    const zvPathString path("C:\\Temp\\DIR\\temp");
    EXPECT_EQ(3u, path.find("TEMP"));
    EXPECT_EQ(3u, path.find("temp", 3));
    EXPECT_EQ(12u, path.find("temp", 4));
    EXPECT_EQ(2u, path.find("/"));
    EXPECT_EQ(7u, path.find("/dir/"));
    EXPECT_EQ(npos, path.find("temps"));
    EXPECT_EQ(npos, path.find("temp", 13));
    EXPECT_EQ(12u, path.find(zvMBCSSafeString("TEMP"), 4));
}

TEST(PathStringFind, AtOrPastTheEndAndNull)
{
    const zvPathString path("abc");
    EXPECT_EQ(npos, path.find("a", 3));
    EXPECT_EQ(npos, path.find("a", 1000));
    EXPECT_EQ(npos, path.find("", 3));
    EXPECT_EQ(npos, zvPathString().find(""));
    EXPECT_EQ(npos, path.find(static_cast<const char*>(nullptr)));
    EXPECT_EQ(0u, path.find(""));
    EXPECT_EQ(2u, path.find("", 2));
    EXPECT_EQ(npos, path.find("abcd"));
}

TEST(PathStringFind, SecondBytesNeverBeginAMatch)
{
    const LeadByteScope scope(&isLead932);
    const zvPathString path("\x95\x5C"
                            "a\\\x83\x41"
                            "A");
    EXPECT_EQ(3u, path.find("\\"));
    EXPECT_EQ(3u, path.find("/", 1));
    EXPECT_EQ(2u, path.find("A"));
    EXPECT_EQ(6u, path.find("A", 3));
    EXPECT_EQ(4u, path.find("\x83\x41"));
    EXPECT_EQ(npos, path.find("\x83"));
    EXPECT_EQ(npos, path.find("\x83\x61"));
    // From inside a character: the next one.
    EXPECT_EQ(2u, path.find("a", 1));
    EXPECT_EQ(npos, path.find("\x95\x5C", 1));
}

TEST(PathStringFind, LoneLeadByteAtTheEnd)
{
    const LeadByteScope scope(&isLead932);
    const zvPathString path("ab\x95");
    EXPECT_EQ(2u, path.find("\x95"));
    EXPECT_EQ(npos, path.find("\x95\x5C"));
}

TEST(PathStringFind, ASingleCharacter)
{
    const LeadByteScope scope(&isLead932);
    const zvPathString path("\x95\x5C"
                            "a\\\x83\x41"
                            "A");
    EXPECT_EQ(3u, path.find('\\'));
    EXPECT_EQ(3u, path.find('/', 1));
    EXPECT_EQ(2u, path.find('A'));
    EXPECT_EQ(6u, path.find('a', 3));
    EXPECT_EQ(npos, path.find('\x83'));
    EXPECT_EQ(npos, path.find('\\', 4));
    EXPECT_EQ(npos, path.find('a', 1000));
}

TEST(PathStringFind, EmbeddedNul)
{
    zvPathString path;
    path.assign("a\0b", 3);
    EXPECT_EQ(1u, path.find(zvMBCSSafeString(std::string("\0B", 2))));
}

TEST(PathStringDirectory, TextBeforeTheLastSeparator)
{
    const struct
    {
        const char* path;
        const char* directory;
    } rows[] = {
        {"C:\\dir\\name", "C:\\dir"},
        {"C:\\name", "C:\\"},
        {"C:\\", "C:\\"},
        {"\\name", "\\"},
        {"\\", "\\"},
        {"name", ""},
        {"", ""},
        {"a\\b", "a"},
        {"a\\", "a"},
        {"C:\\dir\\", "C:\\dir"},
        {"\\\\srv", "\\\\"},
        {"\\\\srv\\share", "\\\\srv"},
        {"C:name", ""},
        {"a b\\c", "a b"},
        {"\\a\\b", "\\a"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.directory, bytes(zvPathString(row.path).directoryPart())) << row.path;
}

TEST(PathStringDirectory, TakesTheTextAsItStands)
{
    zvPathString path("a ");
    path.append("a \\b");
    EXPECT_EQ("aa ", bytes(path.directoryPart()));
}

TEST(PathStringDirectory, ANulIsAByteLikeOthers)
{
    const std::string name("\\\0\\name", 7);
    EXPECT_EQ(std::string("\\\0", 2), bytes(zvPathString(name).directoryPart()));
    EXPECT_EQ(std::string("C:\\\0", 4), bytes(zvPathString(std::string("C:\\\0\\", 5)).directoryPart()));
}

TEST(PathStringDirectory, DoubleByteNames)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ("", bytes(zvPathString("\x95\x5C").directoryPart()));
    EXPECT_EQ("\x95\x5C", bytes(zvPathString("\x95\x5C\\\x95\x5C").directoryPart()));
}
