#include "tests/support/child.h"
#include "tests/support/encoding.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <clocale>
#include <iostream>
#include <sstream>

using namespace zorvel::test;

namespace {

/// Emits every message in the locale of the environment; prints it in UTF-8.
int emitAll(const std::vector<std::string>& arguments)
{
    if (arguments.empty() && !std::setlocale(LC_ALL, ""))
        return 2;
    std::ostringstream stream;
    for (const MessageText& message : messageTexts)
        emitSample(zorvel::errors::messageEmitter, stream, message);
    std::cout << utf8FromProcessCodePage(stream.str());
    return 0;
}

const ChildMode emitAllMode("emit-all", &emitAll);

typedef std::vector<std::pair<std::string, std::string>> Variables;

std::string allIn(std::string (*language)(const MessageText&))
{
    std::string text;
    for (const MessageText& message : messageTexts)
        text += language(message) + '\n';
    return text;
}

std::string emittedWith(const Variables& variables, const std::vector<std::string>& arguments = {})
{
    ProcessOptions options;
    options.unset = {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG", "LANGUAGE", "ZORVEL_CODE_PAGE"};
    options.set = variables;
    options.set.emplace_back("LOCPATH", ZORVEL_TEST_LOCALES);
    const ChildResult child = runChild("emit-all", arguments, options);
    EXPECT_EQ(0, child.status) << child.errors;
    return child.output;
}

/// "ja" or "en": in which of the two a child emits everything.
std::string languageWith(const Variables& variables, const std::vector<std::string>& arguments = {})
{
    const std::string emitted = emittedWith(variables, arguments);
    if (emitted == allIn(&sampleInJapanese))
        return "ja";
    return emitted == allIn(&sampleInEnglish) ? "en" : emitted;
}

}  // namespace

TEST(MessageLocales, JapaneseLocalesOfEveryCodesetShowJapanese)
{
    for (const char* locale : {"ja_JP.SHIFT_JIS", "ja_JP.WINDOWS-31J", "ja_JP.EUC-JP", "ja_JP.UTF-8"})
        EXPECT_EQ("ja", languageWith({{"LC_ALL", locale}})) << locale;
}

TEST(MessageLocales, OthersShowEnglish)
{
    for (const char* locale : {"C", "POSIX", "C.UTF-8", "en_US.ISO-8859-1", "ko_KR.EUC-KR", "zh_CN.GBK"})
        EXPECT_EQ("en", languageWith({{"LC_ALL", locale}})) << locale;
}

TEST(MessageLocales, LanguageOfMessagesCounts)
{
    EXPECT_EQ("ja", languageWith({{"LC_CTYPE", "ja_JP.EUC-JP"}, {"LC_MESSAGES", "ja_JP.UTF-8"}}));
    EXPECT_EQ("en", languageWith({{"LC_CTYPE", "ja_JP.SHIFT_JIS"}, {"LC_MESSAGES", "en_US.ISO-8859-1"}}));
    EXPECT_EQ("en", languageWith({{"LANG", "ja_JP.SHIFT_JIS"}, {"LC_MESSAGES", "C"}}));
}

TEST(MessageLocales, WhatTheCodesetLacksIsShownInEnglish)
{
    EXPECT_EQ("en", languageWith({{"LC_CTYPE", "en_US.ISO-8859-1"}, {"LC_MESSAGES", "ja_JP.SHIFT_JIS"}}));
    EXPECT_EQ("en", languageWith({{"LC_CTYPE", "C"}, {"LC_MESSAGES", "ja_JP.SHIFT_JIS"}}));
    EXPECT_EQ("en", languageWith({{"LC_ALL", "en_US.ISO-8859-1"}, {"LANGUAGE", "ja"}}));
}

TEST(MessageLocales, OtherLanguagesCodesetsMayShowJapanese)
{
    EXPECT_EQ("ja", languageWith({{"LC_ALL", "zh_CN.GBK"}, {"LANGUAGE", "ja"}}));
}

TEST(MessageLocales, ListOfLanguagesGoesBeforeTheLocale)
{
    EXPECT_EQ("ja", languageWith({{"LC_ALL", "ja_JP.SHIFT_JIS"}, {"LANGUAGE", "ja_JP:en"}}));
    EXPECT_EQ("ja", languageWith({{"LC_ALL", "ja_JP.SHIFT_JIS"}, {"LANGUAGE", ""}}));
    EXPECT_EQ("en", languageWith({{"LC_ALL", "ja_JP.SHIFT_JIS"}, {"LANGUAGE", "en:ja"}}));
    EXPECT_EQ("en", languageWith({{"LC_ALL", "ja_JP.SHIFT_JIS"}, {"LANGUAGE", "jam"}}));
    EXPECT_EQ("en", languageWith({{"LC_ALL", "C"}, {"LANGUAGE", "ja"}}));
}

TEST(MessageLocales, AnApplicationThatSetsNoLocaleIsShownEnglish)
{
    EXPECT_EQ("en", languageWith({{"LC_ALL", "ja_JP.UTF-8"}}, {"no locale"}));
    EXPECT_EQ("en", languageWith({{"LC_ALL", "ja_JP.UTF-8"}, {"LANGUAGE", "ja"}}, {"no locale"}));
}
