#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <type_traits>

using namespace zorvel::test;

namespace {

int calls = 0;

bool countCall(const char*)
{
    ++calls;
    return false;
}

}  // namespace

TEST(Callbacks, IgnoreDoesNothing)
{
    const zvIgnoreString ignore;
    ignore("path");
    ignore(nullptr);
}

TEST(Callbacks, SizeAdderAddsToTheCallersTotal)
{
    TemporaryTree tree;
    tree.file("a", "123");
    tree.file("b", "45");
    zvUInt64 total = 100;
    const zvDirectorySizeAdder adder(&total);
    adder(tree.path("a").c_str());
    zvDirectorySizeAdder copy(adder);
    copy(tree.path("b").c_str());
    copy(tree.path("missing").c_str());
    copy(nullptr);
    EXPECT_EQ(total, 105u);
    zvUInt64 other = 0;
    copy = zvDirectorySizeAdder(&other);
    copy(tree.path("a").c_str());
    EXPECT_EQ(total, 105u);
    EXPECT_EQ(other, 3u);
}

TEST(Callbacks, SizeAdderWithoutTotalIsHarmless)
{
    TemporaryTree tree;
    tree.file("a", "123");
    zvDirectorySizeAdder(nullptr)(tree.path("a").c_str());
}

TEST(Callbacks, NamesAreInternedInOrder)
{
    const std::unique_ptr<_namehash_context, void (*)(_namehash_context*)> context(qx_namehash_create(),
                                                                                   &qx_namehash_destroy);
    std::vector<const char*> names;
    const zvHashNameToVector collect(names, context.get());
    const std::string first("one");
    collect(first.c_str());
    collect("two");
    const zvHashNameToVector copy(collect);
    copy("one");
    ASSERT_EQ(names.size(), 3u);
    EXPECT_STREQ(names[0], "one");
    EXPECT_STREQ(names[1], "two");
    EXPECT_EQ(names[0], names[2]);
    EXPECT_NE(names[0], first.c_str());
}

TEST(Callbacks, NamesThatTheSetRefusesAreNull)
{
    std::vector<const char*> names;
    zvHashNameToVector(names, nullptr)("one");
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0], nullptr);
}

TEST(Callbacks, AdapterCallsFunctionsAndObjects)
{
    calls = 0;
    bool (*function)(const char*) = &countCall;
    const zvStringProcedureAdapter<bool (*)(const char*)> onFunction(function);
    onFunction("x");
    EXPECT_EQ(calls, 1);
    std::string last;
    auto object = [&last](const char* path) { last = path; };
    const zvStringProcedureAdapter<decltype(object)> onObject(object);
    onObject("the path");
    EXPECT_EQ(last, "the path");
}

TEST(Callbacks, InterfacesAreAbstractAndPolymorphic)
{
    EXPECT_TRUE(std::is_abstract<zvStringProcedure>::value);
    EXPECT_TRUE(std::is_abstract<zvStringPrefixProcedure>::value);
    EXPECT_TRUE(std::is_abstract<zvStringPredicate>::value);
    EXPECT_TRUE(std::is_abstract<zvStringPrefixPredicate>::value);
    EXPECT_TRUE(std::has_virtual_destructor<zvStringProcedure>::value);
    EXPECT_TRUE(std::has_virtual_destructor<zvStringPredicate>::value);
}

namespace {

class IsLong : public zvStringPredicate
{
public:
    bool operator()(const char* text) const override { return std::strlen(text) > 3; }
};

class BeginsLong : public zvStringPrefixPredicate
{
public:
    bool operator()(const char* prefix) const override { return std::strlen(prefix) > 3; }
};

class KeepPrefix : public zvStringPrefixProcedure
{
public:
    explicit KeepPrefix(std::string& last) : m_last(&last) {}
    void operator()(const char* prefix) const override { *m_last = prefix; }

private:
    std::string* m_last;
};

}  // namespace

TEST(Callbacks, PredicatesAndPrefixesAreCopiedAndCalledThroughTheirBases)
{
    std::string last;
    std::string other;
    IsLong isLong;
    BeginsLong beginsLong;
    KeepPrefix keep(last);
    isLong = IsLong(isLong);
    beginsLong = BeginsLong(beginsLong);
    KeepPrefix copy(keep);
    copy = KeepPrefix(other);
    static_cast<const zvStringPrefixProcedure&>(keep)("a");
    static_cast<const zvStringPrefixProcedure&>(copy)("b");
    EXPECT_TRUE(static_cast<const zvStringPredicate&>(isLong)("long"));
    EXPECT_FALSE(static_cast<const zvStringPrefixPredicate&>(beginsLong)("no"));
    EXPECT_EQ(last, "a");
    EXPECT_EQ(other, "b");
}
