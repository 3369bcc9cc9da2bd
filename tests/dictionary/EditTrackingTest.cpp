#include "dictionary/EditTracking.h"

#include "support/QtPrinters.h"

#include <QList>
#include <QStringList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

TEST(EditTrackingTest, ACommonPrefixEndsAtTheFirstDifference)
{
    EXPECT_EQ(commonPrefixLengthBetween(u"abcd", u"abxd"), 2);
    EXPECT_EQ(commonPrefixLengthBetween(u"abc", u"abcd"), 3);
    EXPECT_EQ(commonPrefixLengthBetween(u"abc", u"abc"), 3);
    EXPECT_EQ(commonPrefixLengthBetween(u"abc", u"xbc"), 0);
    EXPECT_EQ(commonPrefixLengthBetween(u"", u"abc"), 0);
}

TEST(EditTrackingTest, PositionsAreUtf16Units)
{
    // The two faces have their first unit in common.
    EXPECT_EQ(commonPrefixLengthBetween(u"a😀", u"a😁"), 2);
    EXPECT_EQ(commonSuffixLengthBetween(u"😀a", u"\U0001FA00a", 0), 2);
}

TEST(EditTrackingTest, ACommonSuffixStopsAtThePrefix)
{
    EXPECT_EQ(commonSuffixLengthBetween(u"abcd", u"xbcd", 0), 3);
    EXPECT_EQ(commonSuffixLengthBetween(u"aa", u"aaa", 2), 0);
    EXPECT_EQ(commonSuffixLengthBetween(u"aba", u"ababa", 2), 1);
    EXPECT_EQ(commonSuffixLengthBetween(u"ab", u"ab", 5), 0);
}

struct Row {
    const char* name;
    QString before;
    QString after;
    EditPlace place;
    QString text; ///< Of the stretch, which was "hello" in before.
    QString lies; ///< What lies at its place afterwards.
};

class FollowEditTest : public ::testing::TestWithParam<Row> { };

const QList<Row> rows{
    {"AWordWithin", u"Oh hello you"_s, u"Oh heLLo you"_s, EditPlace::Inside, u"heLLo"_s,
        u"heLLo"_s},
    {"TypingWithin", u"Oh hello you"_s, u"Oh hel-lo you"_s, EditPlace::Inside, u"hel-lo"_s,
        u"hel-lo"_s},
    {"DeletingWithin", u"Oh hello you"_s, u"Oh heo you"_s, EditPlace::Inside, u"heo"_s, u"heo"_s},
    {"DeletingItsFirst", u"Oh hello you"_s, u"Oh ello you"_s, EditPlace::Inside, u"ello"_s,
        u"ello"_s},
    {"DeletingItsLast", u"Oh hello you"_s, u"Oh hell you"_s, EditPlace::Inside, u"hell"_s,
        u"hell"_s},
    {"ReplacingAllOfIt", u"Oh hello you"_s, u"Oh Bye! you"_s, EditPlace::Inside, u"Bye!"_s,
        u"Bye!"_s},
    {"DeletingAllOfIt", u"(hello)"_s, u"()"_s, EditPlace::Inside, u""_s, u""_s},
    {"TypingAtItsBeginning", u"Oh hello you"_s, u"Oh xhello you"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"TypingAtItsEnd", u"Oh hello you"_s, u"Oh hellox you"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"TypingBeforeIt", u"Oh hello you"_s, u"Oh dear, hello you"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"DeletingBeforeIt", u"Oh hello you"_s, u"hello you"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"ReplacingUpToIt", u"Oh hello you"_s, u"Yes: hello you"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"TypingBehindIt", u"Oh hello you"_s, u"Oh hello you two"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"DeletingBehindIt", u"Oh hello you"_s, u"Oh hello"_s, EditPlace::Outside, u"hello"_s,
        u"hello"_s},
    {"OverItsBeginning", u"Oh hello you"_s, u"O!ello you"_s, EditPlace::Across, u"hello"_s,
        QString()},
    {"OverItsEnd", u"Oh hello you"_s, u"Oh hell!you"_s, EditPlace::Across, u"hello"_s, QString()},
    {"OverAllOfIt", u"Oh hello you"_s, u"OhXyou"_s, EditPlace::Across, u"hello"_s, QString()},
    {"EverythingGone", u"Oh hello you"_s, u""_s, EditPlace::Across, u"hello"_s, QString()},
};

INSTANTIATE_TEST_SUITE_P(Edits, FollowEditTest, ::testing::ValuesIn(rows),
    [](const auto& row) { return row.param.name; });

TEST_P(FollowEditTest, TheStretchTakesPartMovesOrIsLost)
{
    const Row& row = GetParam();
    TrackedStretch stretch{u"hello"_s, {row.before.indexOf(u"hello"_s), 5}};

    EXPECT_EQ(followEdit(stretch, row.before, row.after), row.place);
    EXPECT_EQ(stretch.text, row.text);
    EXPECT_EQ(stretch.range.length, row.text.size());
    if (!row.lies.isNull()) {
        EXPECT_EQ(row.after.mid(stretch.range.location, stretch.range.length), row.lies);
    }
}

TEST(FollowEditTest, EditsAddUp)
{
    TrackedStretch stretch{u"open ai"_s, {6, 7}};
    const QStringList values{u"I use open ai now"_s, u"I use Open ai now"_s, u"I use Open AI now"_s,
        u"Well, I use Open AI now"_s, u"Well, I use OpenAI now"_s};
    for (qsizetype i = 1; i < values.size(); ++i)
        static_cast<void>(followEdit(stretch, values[i - 1], values[i]));

    EXPECT_EQ(stretch, (TrackedStretch{u"OpenAI"_s, {12, 6}}));
}

TEST(FollowEditTest, WhatIsNotKnownOfTheStretchIsNotReplaced)
{
    TrackedStretch stretch{u"he"_s, {0, 5}};

    EXPECT_EQ(followEdit(stretch, u"hello", u"helLo"), EditPlace::Outside);
    EXPECT_EQ(stretch, (TrackedStretch{u"he"_s, {0, 5}}));
}

} // namespace
} // namespace tavrin
