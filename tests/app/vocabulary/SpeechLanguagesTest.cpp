#include "app/vocabulary/SpeechLanguages.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

QString englishNameOf(const QString& tag)
{
    const SpeechLanguageRow* const known = speechLanguage(tag);
    return known ? known->name.en.toString() : QString();
}

TEST(SpeechLanguagesTest, ATagIsReadUpToItsRegion)
{
    EXPECT_EQ(englishNameOf(u"en"_s), "English");
    EXPECT_EQ(englishNameOf(u"en-US"_s), "English");
    EXPECT_EQ(englishNameOf(u"EN-gb"_s), "English");
    EXPECT_EQ(englishNameOf(u"nb-NO"_s), "Norwegian");
    EXPECT_EQ(englishNameOf(u"fi"_s), "Finnish");
}

TEST(SpeechLanguagesTest, ARegionWithANameOfItsOwnHasThat)
{
    for (const QString& tag : {u"zh-CN"_s, u"zh-Hans-SG"_s, u"cmn-Hans-CN"_s})
        EXPECT_EQ(englishNameOf(tag), "Mandarin") << tag.toStdString();
    EXPECT_EQ(englishNameOf(u"zh-TW"_s), "Mandarin (Taiwan)");
    EXPECT_EQ(englishNameOf(u"yue-HK"_s), "Cantonese");
    EXPECT_EQ(speechLanguage(u"zh-CN"_s)->name.zhHans, u"普通话");
    EXPECT_EQ(englishNameOf(u"pt-PT"_s), "Portuguese");
}

TEST(SpeechLanguagesTest, OthersHaveNoName)
{
    for (const QString& tag : {QString(), u"-"_s, u"xx"_s, u"english"_s})
        EXPECT_EQ(speechLanguage(tag), nullptr) << tag.toStdString();
}

} // namespace
} // namespace tavrin
