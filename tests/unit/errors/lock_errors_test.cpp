#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace {

template <class Error>
std::string textOf(const std::string& detail)
{
    return Error(detail).what();
}

TEST(LockErrors, TextIsThePrefixAndTheDetail)
{
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: C:\\data", textOf<zvNoSuchDirectory>("C:\\data"));
    EXPECT_EQ("Tried to obtain a lock on a directory without write permission: C:\\data",
              textOf<zvPermissionDenied>("C:\\data"));
    EXPECT_EQ("File system error occurred: C:\\data", textOf<zvFileAccessError>("C:\\data"));
    EXPECT_EQ("File not found: C:\\data", textOf<zvFileNotFoundError>("C:\\data"));
}

TEST(LockErrors, AnEmptyDetailLeavesTheTrailingBlank)
{
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: ", textOf<zvNoSuchDirectory>(""));
    EXPECT_EQ("Tried to obtain a lock on a directory without write permission: ", textOf<zvPermissionDenied>(""));
    EXPECT_EQ("File system error occurred: ", textOf<zvFileAccessError>(""));
    EXPECT_EQ("File not found: ", textOf<zvFileNotFoundError>(""));
}

TEST(LockErrors, ALongDetailIsKeptWhole)
{
    const std::string detail(100000, 'x');
    EXPECT_EQ("File not found: " + detail, textOf<zvFileNotFoundError>(detail));
}

TEST(LockErrors, BytesOfTheCodePageAreKept)
{
    EXPECT_EQ("File not found: \x95\x5c\xff", textOf<zvFileNotFoundError>("\x95\x5c\xff"));
}

template <class Error>
void copyOutlivesItsSource()
{
    std::unique_ptr<Error> source(new Error("the first detail, long enough for the heap"));
    const std::string text = source->what();
    const Error copy(*source);
    Error assigned("another");
    assigned = *source;
    EXPECT_STREQ(text.c_str(), source->what());
    source.reset();
    EXPECT_EQ(text, copy.what());
    EXPECT_EQ(text, assigned.what());
}

TEST(LockErrors, CopiesAndAssignedOnesOutliveTheirSource)
{
    copyOutlivesItsSource<zvNoSuchDirectory>();
    copyOutlivesItsSource<zvPermissionDenied>();
    copyOutlivesItsSource<zvFileAccessError>();
    copyOutlivesItsSource<zvFileNotFoundError>();
}

TEST(LockErrors, AssignmentToItselfKeepsTheText)
{
    zvFileAccessError error("detail");
    const zvFileAccessError& same = error;
    error = same;
    EXPECT_STREQ("File system error occurred: detail", error.what());
}

TEST(LockErrors, TheBaseOfADerivedOneCarriesTheWholeText)
{
    std::unique_ptr<zvNoSuchDirectory> source(new zvNoSuchDirectory("d"));
    const zvFileBasedLockError base(*source);
    source.reset();
    EXPECT_STREQ("Tried to obtain a lock on a non-existent directory: d", base.what());
}

TEST(LockErrors, TheBaseCannotBeMadeFromAText)
{
    EXPECT_FALSE((std::is_constructible<zvFileBasedLockError, std::string>::value));
    EXPECT_TRUE((std::is_copy_constructible<zvFileBasedLockError>::value));
    EXPECT_TRUE((std::is_copy_assignable<zvFileBasedLockError>::value));
}

TEST(LockErrors, WhatIsValidAsLongAsTheException)
{
    const zvFileNotFoundError error("x");
    EXPECT_EQ(error.what(), error.what());
}

template <class Error>
void isCaughtAsEachBase()
{
    EXPECT_THROW(throw Error("d"), Error);
    EXPECT_THROW(throw Error("d"), zvFileBasedLockError);
    try {
        throw Error("d");
    } catch (const std::exception& error) {
        EXPECT_EQ(textOf<Error>("d"), error.what());
    }
}

TEST(LockErrors, AreCaughtAsThemselvesAsTheBaseAndAsTheStandardException)
{
    isCaughtAsEachBase<zvNoSuchDirectory>();
    isCaughtAsEachBase<zvPermissionDenied>();
    isCaughtAsEachBase<zvFileAccessError>();
    isCaughtAsEachBase<zvFileNotFoundError>();
}

TEST(LockErrors, TheFourAreNotTakenForEachOther)
{
    EXPECT_FALSE((std::is_base_of<zvFileAccessError, zvFileNotFoundError>::value));
    EXPECT_FALSE((std::is_base_of<zvFileAccessError, zvPermissionDenied>::value));
    EXPECT_FALSE((std::is_base_of<zvFileAccessError, zvNoSuchDirectory>::value));
}

TEST(LockErrors, ThrownInsideTheLibraryIsCaughtOutside)
{
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    EXPECT_THROW(fs->getModificationTime("no such file"), zvFileNotFoundError);
    EXPECT_THROW(fs->getModificationTime("no such file"), zvFileBasedLockError);
    EXPECT_THROW(fs->getModificationTime("no such file"), std::exception);
}

}  // namespace
