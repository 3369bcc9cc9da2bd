#include "history/JsonText.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

TEST(JsonTextTest, TextWithoutEscapesIsAsItIsWritten)
{
    EXPECT_EQ(textFromJson("plain 中文 😀"), u"plain 中文 😀"_s);
    EXPECT_EQ(textFromJson({}), QString());
}

TEST(JsonTextTest, EveryEscapeIsRead)
{
    EXPECT_EQ(textFromJson(R"(a\"b\\c\/d\be\ff\ng\rh\ti)"), u"a\"b\\c/d\be\ff\ng\rh\ti"_s);
    EXPECT_EQ(textFromJson(R"(中\u4e2d\u0041\uD83D\uDE00)"), u"中中A😀"_s);
    EXPECT_EQ(textFromJson(R"(\\n)"), u"\\n"_s);
    EXPECT_EQ(textFromJson(R"(\\\n)"), u"\\\n"_s);
}

TEST(JsonTextTest, AMalformedEndIsReadAsFarAsItGoes)
{
    EXPECT_EQ(textFromJson(R"(a\)"), u"a\\"_s);
    EXPECT_EQ(textFromJson(R"(a\u12)"), u"au12"_s);
    EXPECT_EQ(textFromJson(R"(a\uzzzz)"), u"auzzzz"_s);
}

} // namespace
} // namespace tavrin
