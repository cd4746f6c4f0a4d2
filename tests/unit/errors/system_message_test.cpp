#include <zorvel/errors.h>

#include "tests/support/system_facts.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>

namespace {

using namespace zorvel::test;

const unsigned long lastErrorCode = 0xFFFFFFFFul;

TEST(SystemMessage, IsTheSystemsOwnText)
{
    EXPECT_EQ(systemTextOf(codeOfMissingFile()), zvGetWinErrorMessage(codeOfMissingFile()));
    EXPECT_EQ(systemTextOf(codeOfDeniedAccess()), zvGetWinErrorMessage(codeOfDeniedAccess()));
    EXPECT_NE("", zvGetWinErrorMessage(codeOfMissingFile()));
    EXPECT_NE(zvGetWinErrorMessage(codeOfMissingFile()), zvGetWinErrorMessage(codeOfDeniedAccess()));
}

TEST(SystemMessage, KeepsTheSystemsLineEnd)
{
    const std::string text = zvGetWinErrorMessage(codeOfMissingFile());
    EXPECT_EQ(systemTextsEndWithALine(), text.size() > 2 && text.substr(text.size() - 2) == "\r\n") << text;
}

TEST(SystemMessage, AllBitsOf32AskForTheLastError)
{
    failToOpenAFile();
    EXPECT_EQ(systemTextOf(codeOfMissingFile()), zvGetWinErrorMessage(lastErrorCode));
}

TEST(SystemMessage, AllBitsOfTheTypeAskForTheLastError)
{
    failToOpenAFile();
    EXPECT_EQ(systemTextOf(codeOfMissingFile()), zvGetWinErrorMessage(std::numeric_limits<unsigned long>::max()));
}

TEST(SystemMessage, TheLastErrorIsTheThreadsOwn)
{
    failToOpenAFile();
    std::string there;
    std::thread([&] {
        clearLastError();
        there = zvGetWinErrorMessage(lastErrorCode);
    }).join();
    EXPECT_EQ(systemTextOf(0), there);
}

TEST(SystemMessage, ZeroIsACodeOfItsOwn)
{
    failToOpenAFile();
    const std::string text = zvGetWinErrorMessage(0);
    EXPECT_EQ(systemTextOf(0), text);
    EXPECT_NE(systemTextOf(codeOfMissingFile()), text);
}

TEST(SystemMessage, AnUnknownCodeHasNoText)
{
    EXPECT_EQ("", zvGetWinErrorMessage(0x7FFF1234ul));
    EXPECT_EQ("", zvGetWinErrorMessage(0xFFFFFFFEul));
}

}  // namespace
