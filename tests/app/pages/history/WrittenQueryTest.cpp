#include "app/pages/history/WrittenQuery.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// What the bytes between the quotation marks tell.
std::optional<bool> isIn(const QString& written, const QString& query)
{
    const auto looked = WrittenQuery::of(query);
    return looked ? looked->isIn(written.toUtf8()) : std::nullopt;
}

TEST(WrittenQueryTest, BytesTellInEveryScript)
{
    EXPECT_EQ(isIn(u"another text"_s, u"review"_s), false);
    EXPECT_EQ(isIn(u"Über das Gespräch"_s, u"übergänge"_s), false);
    EXPECT_EQ(isIn(u"О бюджете на будущий год"_s, u"ковальчук"_s), false);
    EXPECT_EQ(isIn(u"改到三楼"_s, u"评审"_s), false);
    EXPECT_EQ(isIn(u"今天评审"_s, u"评审"_s), true);
}

TEST(WrittenQueryTest, LettersAreFoundInEitherCase)
{
    EXPECT_EQ(isIn(u"viele ÜBERGÄNGE da"_s, u"übergänge"_s), true);
    EXPECT_EQ(isIn(u"спросить Ковальчук"_s, u"КОВАЛЬЧУК"_s), true);
    EXPECT_EQ(isIn(u"ΣΊΣΥΦΟΣ"_s, u"σίσυφος"_s), true);
}

TEST(WrittenQueryTest, BytesDoNotTellWhereANumberedEscapeStands)
{
    EXPECT_EQ(isIn(u"caf\\u00e9"_s, u"é"_s), std::nullopt);
    EXPECT_EQ(isIn(u"caf\\u00e9"_s, u"e9"_s), std::nullopt);
    EXPECT_EQ(isIn(u"two\\nlines"_s, u"nl"_s), false);
    EXPECT_EQ(isIn(u"a\\\\u00e9"_s, u"e9"_s), true); // A stroke that is written twice.
}

TEST(WrittenQueryTest, BytesDoNotTellWhereARareFormStands)
{
    EXPECT_EQ(isIn(u"1000 \u212A"_s, u"k"_s), std::nullopt);
    EXPECT_EQ(isIn(u"1000 \u212A or k"_s, u"k"_s), true);
    EXPECT_EQ(isIn(u"1000 \u212A"_s, u"x"_s), false);
}

TEST(WrittenQueryTest, WhatMayBeWrittenOtherwiseIsNotLookedForInBytes)
{
    for (const QString& query : {u"a/b"_s, u"\""_s, u"\\"_s, u"a\nb"_s, u"😀"_s, u"\uFFFD"_s})
        EXPECT_FALSE(WrittenQuery::of(query)) << query.toStdString();
}

} // namespace
} // namespace tavrin
