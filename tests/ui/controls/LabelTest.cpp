#include "ui/controls/Label.h"

#include "support/QtPrinters.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class LabelTest : public ::testing::Test {
protected:
    QWidget page;
    const QFont font = brand::tavBodyFont();

    LabelTest() { page.resize(610, 640); }

    [[nodiscard]] int widthOf(const QString& text, double less = 0) const
    {
        QFont smaller = font;
        smaller.setPointSizeF(font.pointSizeF() * (12.5 - less) / 12.5);
        return static_cast<int>(std::ceil(QFontMetricsF(smaller).horizontalAdvance(text)));
    }
};

TEST_F(LabelTest, AFrameCountsFromTheBottomLeft)
{
    const Label label(page, {36, 584, 520, 34}, font, Qt::black, u"Title"_s);

    EXPECT_EQ(label.geometry(), QRect(36, 22, 520, 34));
}

TEST_F(LabelTest, ATextThatFitsKeepsItsSize)
{
    const Label label(page, {0, 0, 400, 20}, font, Qt::black, u"Short"_s);

    EXPECT_EQ(label.lineCount(), 1);
    EXPECT_FALSE(label.isElided());
    EXPECT_EQ(label.toolTip(), QString());
}

TEST_F(LabelTest, ATextALittleTooWideGrowsSmallerByOnePointAtMost)
{
    const QString text = u"Choose how long text stays on this computer"_s;
    const Label label(page, {0, 0, widthOf(text, 1) + 1, 20}, font, Qt::black, text);
    EXPECT_EQ(label.lineCount(), 1);

    const Label narrower(page, {0, 0, widthOf(text, 1.5), 20}, font, Qt::black, text);
    EXPECT_EQ(narrower.lineCount(), 2);
}

TEST_F(LabelTest, ASecondLineStandsAboutTheCentreOfTheFrame)
{
    const QString text = u"Disabled — needed to insert at the current cursor"_s;
    const Label label(page, {100, 100, widthOf(text) * 2 / 3, 22}, font, Qt::black, text);

    ASSERT_EQ(label.lineCount(), 2);
    const double centre = 640 - 100 - 11;
    EXPECT_NEAR(label.geometry().y() + label.height() / 2.0, centre, 1);
    EXPECT_GT(label.height(), 30);
}

TEST_F(LabelTest, ASecondLineBelowLeavesTheFirstWhereItWas)
{
    Label label(page, {36, 558, 200, 22}, font, Qt::black);
    label.setSecondLine(Label::SecondLine::Below, 19);
    label.setFullText(u"Shows edited text by default. Reveal the original."_s);

    ASSERT_EQ(label.lineCount(), 2);
    EXPECT_EQ(label.geometry(), QRect(36, 60, 200, 38));
}

TEST_F(LabelTest, WhatIsStillTooLongEndsInAnEllipsisAndIsWholeInTheToolTip)
{
    const QString text = u"word "_s.repeated(200).trimmed();
    const Label label(page, {0, 0, 200, 22}, font, Qt::black, text);

    EXPECT_TRUE(label.isElided());
    EXPECT_EQ(label.lineCount(), 2);
    EXPECT_EQ(label.toolTip(), text);
    EXPECT_EQ(label.accessibleName(), text);
    EXPECT_EQ(label.fullText(), text);
}

TEST_F(LabelTest, NamesAreElidedAtOnce)
{
    Label label(page, {0, 0, 80, 22}, font, Qt::black);
    label.setFitting(elideAtOnce);
    label.setFullText(u"Quarterly Operations and Procurement"_s);

    EXPECT_EQ(label.lineCount(), 1);
    EXPECT_TRUE(label.isElided());
}

TEST_F(LabelTest, MarkupIsPlainTextInTheToolTipToo)
{
    Label label(page, {0, 0, 60, 22}, font, Qt::black);
    label.setFitting(elideAtOnce);
    label.setFullText(u"<b>bold</b> & <img src=x> more"_s);

    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_TRUE(label.toolTip().contains(u"&lt;b&gt;bold"_s)) << label.toolTip().toStdString();
}

TEST_F(LabelTest, AnEndlessTextIsShownQuickly)
{
    const QString text(1'000'000, u'x');
    const Label label(page, {0, 0, 200, 22}, font, Qt::black, text);

    EXPECT_TRUE(label.isElided());
    EXPECT_LE(label.toolTip().size(), 2000);
}

TEST_F(LabelTest, LineBreaksOfATextAreSpaces)
{
    const Label label(page, {0, 0, 400, 22}, font, Qt::black, u"one\ntwo\r\nthree"_s);

    EXPECT_EQ(label.lineCount(), 1);
}

} // namespace
} // namespace tavrin::ui
