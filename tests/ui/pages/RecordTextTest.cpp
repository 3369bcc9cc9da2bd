#include "ui/pages/RecordText.h"

#include "support/QtPrinters.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class RecordTextTest : public ::testing::Test {
protected:
    RecordText text;

    void set(const QString& shown, int mostLines, const QString& query = {}, double width = 494)
    {
        text.setText(shown,
            {.font = brand::tavBodyFont(), .width = width, .mostLines = mostLines, .query = query});
    }

    [[nodiscard]] static double widthOf(const QString& line)
    {
        return QFontMetricsF(brand::tavBodyFont()).horizontalAdvance(line);
    }
};

TEST_F(RecordTextTest, AShortTextIsOneLine)
{
    set(u"short"_s, 2);
    EXPECT_EQ(text.lines(), QStringList{u"short"_s});
    EXPECT_FALSE(text.isElided());
    set({}, 2);
    EXPECT_EQ(text.lineCount(), 1);
    EXPECT_FALSE(text.isElided());
}

TEST_F(RecordTextTest, ALongTextIsWrappedAndEndsInAnEllipsis)
{
    const QString words = u"some words "_s.repeated(40);
    set(words, 2);
    ASSERT_EQ(text.lineCount(), 2);
    EXPECT_TRUE(text.isElided());
    EXPECT_TRUE(text.lines()[1].endsWith(u'…'));
    for (const QString& line : text.lines())
        EXPECT_LE(widthOf(line), 494 + 5) << line.toStdString(); // A space may stand over the edge.

    set(words, 60);
    EXPECT_GT(text.lineCount(), 3);
    QString whole = text.lines().join(QString());
    EXPECT_TRUE(words.startsWith(whole.chopped(whole.endsWith(u'…') ? 1 : 0)));
}

TEST_F(RecordTextTest, WhatIsLeftOutIsSaidEvenWhereTheLinesHaveRoom)
{
    set(QString(400, u'i'), 60);
    EXPECT_TRUE(text.isElided());
    EXPECT_TRUE(text.lines().last().endsWith(u'…'));
}

TEST_F(RecordTextTest, LineBreaksAreKeptAndWhiteSpaceAroundTheTextIsNot)
{
    set(u"\n first\nsecond\r\n\n"_s, 5);
    EXPECT_EQ(text.lines(), (QStringList{u"first"_s, u"second"_s}));
    EXPECT_FALSE(text.isElided());

    set(u"first\nsecond\nthird"_s, 2);
    EXPECT_EQ(text.lines(), (QStringList{u"first"_s, u"second…"_s}));
    EXPECT_TRUE(text.isElided());
    set(u"first\nsecond"_s, 1);
    EXPECT_EQ(text.lines(), QStringList{u"first…"_s});
}

TEST_F(RecordTextTest, AWordWithoutAnEndIsBroken)
{
    set(QString(250, u'W'), 2);
    EXPECT_EQ(text.lineCount(), 2);
    EXPECT_TRUE(text.isElided());
    for (const QString& line : text.lines())
        EXPECT_LE(widthOf(line), 494);
}

TEST_F(RecordTextTest, AHugeTextIsCutBeforeItIsLookedAt)
{
    set(QString(10'000'000, u'中'), 2);
    EXPECT_EQ(text.lineCount(), 2);
    EXPECT_TRUE(text.isElided());
}

TEST_F(RecordTextTest, WhatIsLookedForIsMarkedWhateverItsCase)
{
    set(u"The Review, a review, and no preview"_s, 2, u"REVIEW"_s);
    EXPECT_EQ(text.marked(), (QStringList{u"Review"_s, u"review"_s, u"review"_s}));
    set(u"周四的评审"_s, 2, u"评审"_s);
    EXPECT_EQ(text.marked(), QStringList{u"评审"_s});
    set(u"nothing"_s, 2, u"else, and much longer than the text"_s);
    EXPECT_TRUE(text.marked().isEmpty());
}

TEST_F(RecordTextTest, AMatchThatIsBrokenIntoTwoLinesIsMarkedInBoth)
{
    set(u"aaaa bbbb"_s, 2, u"aa bb"_s, widthOf(u"aaaa b"_s));
    ASSERT_EQ(text.lineCount(), 2);
    EXPECT_EQ(text.marked().join(QString()), u"aa bb"_s);
    EXPECT_EQ(text.marked().size(), 2);
}

TEST_F(RecordTextTest, AMatchBehindTheEllipsisIsBroughtIntoSight)
{
    const QString words =
        u"some words "_s.repeated(100) + u"the needle "_s + u"more "_s.repeated(99);
    set(words, 2, u"needle"_s);
    EXPECT_EQ(text.marked(), QStringList{u"needle"_s});
    EXPECT_TRUE(text.lines()[0].startsWith(u'…'));
    EXPECT_TRUE(text.lines()[0].contains(u"words the needle"_s));
    EXPECT_TRUE(text.isElided());
    EXPECT_EQ(text.lineCount(), 2);

    set(QString(5000, u'中') + u"终"_s, 2, u"终"_s);
    EXPECT_EQ(text.marked(), QStringList{u"终"_s});
}

TEST_F(RecordTextTest, AMatchInSightLeavesTheBeginningWhereItIs)
{
    const QString words = u"needle "_s + u"some words "_s.repeated(100) + u"needle"_s;
    set(words, 2, u"needle"_s);
    EXPECT_TRUE(text.lines()[0].startsWith(u"needle some"_s));
    EXPECT_EQ(text.marked(), QStringList{u"needle"_s});
}

TEST_F(RecordTextTest, AMatchIsDrawnOnItsMark)
{
    set(u"left needle"_s, 1, u"needle"_s);
    QImage image(200, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    text.paint(painter, {0, 0}, 20);
    painter.end();

    const int left = static_cast<int>(widthOf(u"left "_s));
    const auto isMarked = [&](int x) { return image.pixelColor(x, 3) == brand::match(); };
    EXPECT_FALSE(isMarked(left - 6));
    EXPECT_TRUE(isMarked(left + 10));
    EXPECT_FALSE(isMarked(left + static_cast<int>(widthOf(u"needle"_s)) + 6));
}

} // namespace
} // namespace tavrin::ui
