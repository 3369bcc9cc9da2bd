#include "ui/hud/HudWidget.h"

#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"
#include "ui/hud/HudTexts.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::hud {

void PrintTo(const QRect& rect, std::ostream* out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

namespace {

constexpr int panelHeight = 145;

/// What stands so far from the left and the bottom of the panel, in the picture's coordinates.
QRect frame(int x, int y, int width, int height)
{
    return {x, panelHeight - y - height, width, height};
}

/// Colours of the panel are drawn over one another: what is seen may differ by rounding.
bool isNear(const QColor& seen, std::array<double, 3> expected)
{
    constexpr double tolerance = 0.02;
    return std::abs(seen.redF() - expected[0]) < tolerance
        && std::abs(seen.greenF() - expected[1]) < tolerance
        && std::abs(seen.blueF() - expected[2]) < tolerance;
}

class HudWidgetTest : public ::testing::Test {
protected:
    testing::InMemoryWorkspace workspace;
    Widget widget{workspace};

    /// The panel with nothing in it that could be left out.
    static Content empty()
    {
        Content content;
        content.barsVisible = false;
        return content;
    }

    QImage picture(const Content& content)
    {
        widget.setContent(content);
        return widget.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    }

    static QColor colorAt(const QImage& image, const QRect& place)
    {
        return image.pixelColor(place.center());
    }

    /// Where @p content differs from the empty panel.
    QRect difference(const Content& content)
    {
        const QImage before = picture(empty());
        const QImage after = picture(content);
        QRect changed;
        for (int y = 0; y < before.height(); ++y) {
            for (int x = 0; x < before.width(); ++x) {
                if (before.pixel(x, y) != after.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        return changed;
    }

    void expectWithin(const QRect& place, const Content& content)
    {
        const QRect drawn = difference(content);
        EXPECT_FALSE(drawn.isEmpty());
        EXPECT_TRUE(place.contains(drawn))
            << ::testing::PrintToString(drawn) << " in " << ::testing::PrintToString(place);
    }

    [[nodiscard]] QPushButton* button(const SimplifiedText& title) const
    {
        for (auto* const each : widget.findChildren<QPushButton*>()) {
            if (each->text() == title.toString())
                return each;
        }
        return nullptr;
    }
};

TEST_F(HudWidgetTest, ThePanelHasItsSizeAndNeverTakesTheFocus)
{
    EXPECT_EQ(widget.size(), QSize(430, 145));
    EXPECT_TRUE(widget.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(widget.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(widget.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(widget.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_FALSE(widget.isVisible());
}

TEST_F(HudWidgetTest, ItStands54PointsAboveTheBottomInTheMiddleOfTheFreeArea)
{
    widget.positionAndShow();

    const QRect free = QApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(widget.x(), free.x() + free.width() / 2 - 430 / 2);
    EXPECT_EQ(free.y() + free.height() - (widget.y() + widget.height()), 54);
    EXPECT_TRUE(widget.isVisible());

    widget.orderOut();
    EXPECT_FALSE(widget.isVisible());
}

TEST_F(HudWidgetTest, TheCornersAreRoundWithAndWithoutTransparency)
{
    const QImage image = picture(empty());
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
    EXPECT_EQ(image.pixelColor(428, 143).alpha(), 0);

    widget.positionAndShow();
    EXPECT_TRUE(widget.mask().isEmpty());
    workspace.compositing = false;
    widget.positionAndShow();
    EXPECT_FALSE(widget.mask().contains(QPoint(1, 1)));
    EXPECT_FALSE(widget.mask().contains(QPoint(428, 143)));
    EXPECT_TRUE(widget.mask().contains(QPoint(22, 3)));
    EXPECT_TRUE(widget.mask().contains(QPoint(215, 72)));
}

TEST_F(HudWidgetTest, TheGroundIsDarkAndAlmostOpaque)
{
    const QColor ground = picture(empty()).pixelColor(215, 72);
    EXPECT_TRUE(isNear(ground, {0.075, 0.065, 0.16}));
    EXPECT_NEAR(ground.alphaF(), 0.96, 0.01);
}

TEST_F(HudWidgetTest, TheDotHasTheColourOfWhatItSays)
{
    struct Row {
        Dot dot;
        std::array<double, 3> color;
    };

    for (const auto& [dot, expected] : {Row{Dot::Recording, {1.0, 0.28, 0.33}},
             Row{Dot::Processing, {0, 0.72, 1.0}}, Row{Dot::Attention, {1.0, 0.58, 0.0}}}) {
        Content content = empty();
        content.dot = dot;
        EXPECT_TRUE(isNear(colorAt(picture(content), frame(20, 111, 10, 10)), expected));
    }
}

TEST_F(HudWidgetTest, TheDotIsTenPointsWide)
{
    const QImage image = picture(empty());
    const QRect dot = frame(20, 111, 10, 10);
    const QPoint middle = dot.center();
    for (const QPoint inside :
        {QPoint(dot.left() + 1, middle.y()), QPoint(dot.right() - 1, middle.y()),
            QPoint(middle.x(), dot.top() + 1), QPoint(middle.x(), dot.bottom() - 1)})
        EXPECT_TRUE(isNear(image.pixelColor(inside), {1.0, 0.28, 0.33}));
    for (const QPoint outside :
        {QPoint(dot.left() - 1, middle.y()), QPoint(dot.right() + 1, middle.y()),
            QPoint(middle.x(), dot.top() - 1), QPoint(middle.x(), dot.bottom() + 1)})
        EXPECT_TRUE(isNear(image.pixelColor(outside), {0.075, 0.065, 0.16}));
}

TEST_F(HudWidgetTest, EachTextHasItsPlaceFontAndShade)
{
    const QString text = u"Grüße"_s;
    const Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
    constexpr double firstLineTop = panelHeight - 39 - 38 + 3;

    struct Row {
        QString Content::*label;
        QRectF place;
        Qt::Alignment alignment;
        int pixels;
        QFont::Weight weight;
        double alpha;
    };

    for (const Row& row : {
             Row{&Content::titleLabel, frame(42, 103, 235, 24), left, 17, QFont::DemiBold, 1},
             Row{&Content::detailLabel, frame(42, 79, 255, 20), left, 12, QFont::Normal, 0.58},
             Row{&Content::timeLabel, frame(348, 104, 60, 22), Qt::AlignCenter, 14, QFont::Medium,
                 0.75},
             Row{&Content::transcriptLabel, QRectF(20, firstLineTop, 390, 17.5), left, 13,
                 QFont::Medium, 0.9},
         }) {
        QFont font = QApplication::font();
        font.setPixelSize(row.pixels);
        font.setWeight(row.weight);
        widget.setContent(empty());
        QImage expected = widget.grab().toImage();
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(font);
        painter.setPen(QColor::fromRgbF(1, 1, 1, static_cast<float>(row.alpha)));
        painter.drawText(row.place, static_cast<int>(row.alignment), text);
        painter.end();

        Content content = empty();
        content.*row.label = text;
        EXPECT_EQ(picture(content), expected.convertToFormat(QImage::Format_ARGB32))
            << row.pixels << " pixels";
    }
}

TEST_F(HudWidgetTest, EachTextStandsInItsPlace)
{
    const QString text = u"Grüße 中文 Ägypten"_s;
    Content content = empty();
    content.titleLabel = text;
    expectWithin(frame(42, 103, 235, 24), content);

    content = empty();
    content.detailLabel = text;
    expectWithin(frame(42, 79, 255, 20), content);

    content = empty();
    content.timeLabel = u"01:15"_s;
    expectWithin(frame(348, 104, 60, 22), content);

    content = empty();
    content.transcriptLabel = text;
    expectWithin(frame(20, 39, 390, 38), content);
}

TEST_F(HudWidgetTest, LongTextsStayWithinTheirPlaces)
{
    const QString text = u"many words 很多字 "_s.repeated(100);
    Content content = empty();
    content.titleLabel = text;
    expectWithin(frame(42, 103, 235, 24), content);

    content = empty();
    content.detailLabel = text;
    content.barsVisible = true; // Beside them there is less room.
    Content bars = empty();
    bars.barsVisible = true;
    const QImage without = picture(bars);
    const QImage with = picture(content);
    const QRect beside(42 + 255, 0, 430 - 42 - 255, 145);
    EXPECT_EQ(without.copy(beside), with.copy(beside));

    content = empty();
    content.transcriptLabel = text;
    expectWithin(frame(20, 37, 390, 42), content); // Two lines; glyphs may reach a little over.
}

TEST_F(HudWidgetTest, OfALongTranscriptTheEndIsShown)
{
    const QString beginning = u"the beginning that nobody needs to see any more "_s.repeated(20);
    Content one = empty();
    one.transcriptLabel = u"first "_s + beginning + u"and the end"_s;
    Content other = empty();
    other.transcriptLabel = u"another "_s + beginning + u"and the end"_s;
    Content longer = empty();
    longer.transcriptLabel = one.transcriptLabel + u" that goes on"_s;

    const QImage shown = picture(one);
    EXPECT_EQ(shown, picture(other));
    EXPECT_NE(shown, picture(longer));
}

TEST_F(HudWidgetTest, ALongTranscriptFillsTwoLines)
{
    Content content = empty();
    content.transcriptLabel = u"many words "_s.repeated(100);
    const QRect drawn = difference(content);
    EXPECT_TRUE(drawn.intersects(QRect(20, 71, 390, 17)));
    EXPECT_TRUE(drawn.intersects(QRect(20, 95, 390, 8))); // Below the first line's letters.
}

TEST_F(HudWidgetTest, SevenBarsStandTwelvePointsApart)
{
    Content content = empty();
    content.barsVisible = true;
    content.bars = staircaseBars();
    const QImage image = picture(content);

    for (int i = 0; i < barCount; ++i) {
        const Bar bar = content.bars.at(std::size_t(i));
        const QRect place = frame(310 + 12 * i, int(bar.y), 4, int(bar.height));
        EXPECT_TRUE(isNear(colorAt(image, place), {0, 0.76, 1}));
        EXPECT_FALSE(isNear(image.pixelColor(place.right() + 4, place.center().y()), {0, 0.76, 1}));
        EXPECT_FALSE(isNear(image.pixelColor(place.center().x(), place.top() - 3), {0, 0.76, 1}));
    }
    expectWithin(frame(310, 24, 12 * 6 + 4, 20), content);
}

TEST_F(HudWidgetTest, TheLightTravelsWithinTheTrack)
{
    Content content = empty();
    const QRect track = frame(20, 18, 390, 7);
    EXPECT_TRUE(isNear(colorAt(picture(content), track), {0.04, 0.14, 0.24}));

    content.lightX = 100;
    const QImage image = picture(content);
    EXPECT_TRUE(isNear(image.pixelColor(20 + 100 + 75, track.center().y()), {1, 1, 1}));
    EXPECT_TRUE(isNear(image.pixelColor(20 + 50, track.center().y()), {0.04, 0.14, 0.24}));
    expectWithin(frame(120, 18, 150, 7), content);

    content.lightX = 380; // Leaves the track at its end.
    expectWithin(frame(400, 18, 10, 7), content);
}

TEST_F(HudWidgetTest, ProgressFillsItsShareOfTheTrack)
{
    Content content = empty();
    content.progressVisible = true;
    content.progress = 50;
    const QImage image = picture(content);
    const int middle = frame(20, 18, 390, 7).center().y();

    EXPECT_TRUE(isNear(image.pixelColor(20 + 180, middle), {0, 0.72, 1.0}));
    EXPECT_TRUE(isNear(image.pixelColor(20 + 210, middle), {0.04, 0.14, 0.24}));
    expectWithin(frame(20, 18, 196, 7), content);
}

TEST_F(HudWidgetTest, ProgressWithoutAnEndTravels)
{
    Content content = empty();
    content.progressVisible = true;
    content.progressIndeterminate = true;
    content.lightX = 0;
    const QRect first = difference(content);
    content.lightX = 100;
    const QRect second = difference(content);

    EXPECT_GT(second.right(), first.right());
    EXPECT_TRUE(frame(20, 18, 390, 7).contains(first));
    EXPECT_TRUE(frame(20, 18, 390, 7).contains(second));
}

TEST_F(HudWidgetTest, TheButtonsHaveTheirPlacesAndTitles)
{
    Content content = empty();
    content.buttonsVisible = true;
    widget.setContent(content);
    QPushButton* const continueButton = button(texts::continueButton);
    QPushButton* const confirmButton = button(texts::confirmCancelButton);
    ASSERT_TRUE(continueButton && confirmButton);
    EXPECT_EQ(continueButton->text(), u"继续输入"_s);
    EXPECT_EQ(continueButton->geometry(), frame(226, 17, 88, 30));
    EXPECT_EQ(confirmButton->text(), u"确认取消"_s);
    EXPECT_EQ(confirmButton->geometry(), frame(320, 17, 90, 30));
    EXPECT_EQ(continueButton->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(confirmButton->focusPolicy(), Qt::NoFocus);

    content.buttonsVisible = false;
    widget.setContent(content);
    EXPECT_TRUE(continueButton->isHidden());
    EXPECT_TRUE(confirmButton->isHidden());
}

TEST_F(HudWidgetTest, TheButtonsActWhileTheyAreShown)
{
    QStringList calls;
    widget.setActions([&] { calls.append(u"confirm"_s); }, [&] { calls.append(u"continue"_s); });
    Content content = empty();
    content.buttonsVisible = true;
    content.takesMouse = true;
    widget.positionAndShow();
    widget.setContent(content);
    EXPECT_TRUE(widget.isVisible());
    EXPECT_FALSE(widget.windowFlags().testFlag(Qt::WindowTransparentForInput));

    button(texts::continueButton)->click();
    button(texts::confirmCancelButton)->click();
    EXPECT_EQ(calls, (QStringList{u"continue"_s, u"confirm"_s}));

    widget.setContent(empty());
    EXPECT_TRUE(widget.windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(button(texts::continueButton)->isHidden());
    EXPECT_TRUE(widget.isVisible());
}

TEST_F(HudWidgetTest, ALongInstructionIsWholeWithinItsPlace)
{
    Content content = empty();
    content.barsVisible = true;
    content.detailLabel = u"Press Shift+Super+Space again to finish and insert"_s;
    const QImage whole = picture(content);
    content.detailLabel += u"."_s;
    // Where the end is left out, one more character changes nothing.
    EXPECT_NE(picture(content), whole);
}

} // namespace
} // namespace tavrin::hud
