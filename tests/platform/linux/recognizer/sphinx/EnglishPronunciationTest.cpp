#include "platform/linux/recognizer/sphinx/EnglishPronunciation.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

class EnglishPronunciationTest : public ::testing::Test {
protected:
    EnglishPronunciation pronunciation;
};

TEST_F(EnglishPronunciationTest, AWordIsLookedUpWithoutItsStress)
{
    EXPECT_EQ(pronunciation.phonesOf("notion"), "N OW SH AH N");
}

TEST_F(EnglishPronunciationTest, AnInventedNameIsSaidByItsLetters)
{
    EXPECT_FALSE(pronunciation.phonesOf("Tavrin").isEmpty());
    EXPECT_EQ(pronunciation.phonesOf("Tavrin"), pronunciation.phonesOf("tavrin"));
}

TEST_F(EnglishPronunciationTest, CapitalsInARowAreNamedOneByOne)
{
    EXPECT_EQ(pronunciation.phonesOf("API"), "EY P IY AY");
    EXPECT_EQ(pronunciation.phonesOf("ChatGPT"),
        pronunciation.phonesOf("chat") + " " + pronunciation.phonesOf("GPT"));
    EXPECT_EQ(pronunciation.phonesOf("macOS"), pronunciation.phonesOf("mac") + " OW EH S");
}

TEST_F(EnglishPronunciationTest, InnerCapitalsAndSignsBeginAWord)
{
    const QString together = pronunciation.phonesOf("git") + " " + pronunciation.phonesOf("hub");

    EXPECT_EQ(pronunciation.phonesOf("GitHub"), together);
    EXPECT_EQ(pronunciation.phonesOf("git-hub"), together);
    EXPECT_EQ(pronunciation.phonesOf("git hub"), together);
    EXPECT_EQ(pronunciation.phonesOf("Objective-C"), pronunciation.phonesOf("objective") + " S IY");
}

TEST_F(EnglishPronunciationTest, DigitsAreNamed)
{
    EXPECT_EQ(pronunciation.phonesOf("B2"), "B IY T UW");
}

TEST_F(EnglishPronunciationTest, AccentsAreLeftAside)
{
    EXPECT_EQ(pronunciation.phonesOf(QStringLiteral("Zoë")), pronunciation.phonesOf("Zoe"));
}

TEST_F(EnglishPronunciationTest, WhatEnglishCannotSayHasNoPhones)
{
    EXPECT_EQ(pronunciation.phonesOf(""), "");
    EXPECT_EQ(pronunciation.phonesOf(" -\x01\n"), "");
    EXPECT_EQ(pronunciation.phonesOf(QStringLiteral("张小明")), "");
    EXPECT_EQ(pronunciation.phonesOf(QStringLiteral("Tavrin你好")), "");
}

} // namespace
} // namespace tavrin
