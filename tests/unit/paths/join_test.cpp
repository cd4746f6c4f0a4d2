#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

std::string joined(std::initializer_list<zvPathString::component> components)
{
    zvPathString path;
    return std::string(path.join(components));
}

/// Joins without a normaliser, so that only the joining itself shows.
class NothingNormalizer : public zvStringNormalizer<zvPathString>
{
public:
    void assignNormalized(zvPathString& target, const char* text, std::size_t length) override
    {
        target.assign(text, length);
    }
    void normalize(zvPathString&) override { ++normalized; }

    int normalized = 0;
};

std::string joinedRaw(std::initializer_list<zvPathString::component> components)
{
    const auto nothing = boost::make_shared<NothingNormalizer>();
    zvPathString path;
    path.setNormalizer(nothing);
    path.join(components);
    EXPECT_EQ(1, nothing->normalized);
    return std::string(path);
}

}  // namespace

TEST(Join, ExactlyOneSeparatorBetween)
{
    EXPECT_EQ("C:\\dir\\name", joined({"C:\\dir\\", "\\\\name"}));
    EXPECT_EQ("C:\\dir\\.deploy_write_lock", joined({"C:\\dir", ".deploy_write_lock"}));
    EXPECT_EQ("a\\b\\c", joined({"a", "b", "c"}));
    EXPECT_EQ("a\\b\\c", joined({"a/", "/b//", "//c"}));
    EXPECT_EQ("a/b/c", joinedRaw({"a/", "/b//", "//c"}));
}

TEST(Join, LeadingComponent)
{
    EXPECT_EQ("\\\\srv\\share", joinedRaw({"\\\\srv", "share"}));
    EXPECT_EQ("\\\\srv", joinedRaw({"\\\\\\\\srv"}));
    EXPECT_EQ("//srv", joinedRaw({"///srv"}));
    EXPECT_EQ("\\a", joinedRaw({"\\a"}));
    EXPECT_EQ("\\", joinedRaw({"\\"}));
    EXPECT_EQ("\\", joinedRaw({"\\\\"}));
    EXPECT_EQ("\\", joinedRaw({"\\\\\\"}));
    EXPECT_EQ("\\", joinedRaw({"\\\\\\\\\\"}));
    EXPECT_EQ("\\a", joinedRaw({"\\\\", "a"}));
    EXPECT_EQ("a\\\\b", joinedRaw({"a\\\\b"}));
}

TEST(Join, TrailingSeparators)
{
    EXPECT_EQ("a\\", joinedRaw({"a\\"}));
    EXPECT_EQ("a\\", joinedRaw({"a\\\\\\"}));
    EXPECT_EQ("a", joinedRaw({"a"}));
    EXPECT_EQ("a\\b/", joinedRaw({"a", "b//"}));
    EXPECT_EQ("a\\", joinedRaw({"a", "\\\\\\"}));
}

TEST(Join, EmptyComponents)
{
    EXPECT_EQ("", joinedRaw({}));
    EXPECT_EQ("", joinedRaw({""}));
    EXPECT_EQ("a", joinedRaw({"", "a"}));
    EXPECT_EQ("a\\", joinedRaw({"a", ""}));
    EXPECT_EQ("a\\b", joinedRaw({"a", "", "b"}));
    EXPECT_EQ("a\\", joinedRaw({"a", static_cast<const char*>(nullptr)}));
    EXPECT_EQ("a\\b", joinedRaw({"a", {"bcd", 1}}));
    EXPECT_EQ("a\\", joinedRaw({"a", {nullptr, 7}}));
    EXPECT_EQ("a\\b", joinedRaw({"a", std::string("b")}));
}

TEST(Join, GoesOnFromThePresentText)
{
    zvPathString path("C:\\dir");
    path.join({"\\\\a"}).join({"b"});
    EXPECT_EQ("C:\\dir\\a\\b", std::string(path));
}

TEST(Join, WholeResultIsNormalisedOnce)
{
    EXPECT_EQ("a \\ b", joined({" a ", " b "}));
    EXPECT_EQ("a\\b\\c", joined({"a//b", "c"}));
}

TEST(Join, ComponentsMayLieInsideTheString)
{
    zvPathString path("abc");
    path.join({path.c_str(), {path.c_str() + 1, 2}, path});
    EXPECT_EQ("abc\\abc\\bc\\abc", std::string(path));
}

TEST(Join, DoubleByteNames)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ("\x95\x5C\\a", joinedRaw({"\x95\x5C", "a"}));
    EXPECT_EQ("a\\\x95\x5C", joinedRaw({"a", "\x95\x5C"}));
    EXPECT_EQ("a\\\x95\x5C\\", joinedRaw({"a", "\x95\x5C\\\\"}));
    EXPECT_EQ("\x95\x5C\\\x95\x5C\\b", joinedRaw({"\x95\x5C", "\x95\x5C\\", "b"}));
    // A lone lead byte ends its component; nothing behind it is touched.
    EXPECT_EQ("a\\\x95", joinedRaw({"a", {"\x95\x5C", 1}}));
}

TEST(JoinConstructor, DirectoryAndName)
{
    EXPECT_EQ("C:\\dir\\name", std::string(zvPathString(zvPathString("C:\\dir"), "name")));
    EXPECT_EQ("\\\\srv\\name", std::string(zvPathString(zvPathString("\\\\srv\\"), "\\name")));
    EXPECT_EQ("name", std::string(zvPathString(zvPathString(), "name")));
    // The directory is the first component of a join onto an empty text.
    EXPECT_EQ("\\name", std::string(zvPathString(zvPathString("\\\\"), "name")));
}

TEST(JoinConstructor, EmptyOrNullNameCopiesTheDirectory)
{
    zvPathString directory("C:\\dir\\");
    directory.append("\\ ");
    EXPECT_EQ("C:\\dir\\\\ ", std::string(zvPathString(directory, "")));
    EXPECT_EQ("C:\\dir\\\\ ", std::string(zvPathString(directory, nullptr)));
}

TEST(JoinConstructor, HasTheStandardNormaliser)
{
    const auto nothing = boost::make_shared<NothingNormalizer>();
    zvPathString directory;
    directory.setNormalizer(nothing);
    directory.assign("a//b");
    zvPathString path(directory, "");
    EXPECT_EQ("a//b", std::string(path));
    path.assign("c//d");
    EXPECT_EQ("c\\d", std::string(path));
    EXPECT_EQ("a\\b\\c", std::string(zvPathString(directory, "c")));
    EXPECT_EQ(0, nothing->normalized);
}
