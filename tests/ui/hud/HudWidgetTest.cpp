#include "ui/hud/HudWidget.h"

#include "support/QtPrinters.h"
#include "support/ports/InMemoryWorkspace.h"
#include "ui/hud/HudTexts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

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

constexpr std::array<double, 3> ground{0.075, 0.065, 0.16};
constexpr std::array<double, 3> trackGround{0.04, 0.14, 0.24};

/// Whether the top left @p corner is round: untouched outside a circle of @p radius, and full of
/// @p inner within the @p border. Pixels on the edge itself are between the two.
bool isRound(const QImage& image, QPoint corner, double radius, double border,
    std::array<double, 3> inner, const std::function<bool(const QColor&)>& isOutside)
{
    constexpr double halfAPixel = 0.71; // Across.
    bool round = true;
    for (int y = 0; y < radius; ++y) {
        for (int x = 0; x < radius; ++x) {
            const double distance = std::hypot(radius - x - 0.5, radius - y - 0.5);
            const QColor seen = image.pixelColor(corner + QPoint(x, y));
            if (distance > radius + halfAPixel - 0.01)
                round &= isOutside(seen);
            else if (distance < radius - border - halfAPixel)
                round &= isNear(seen, inner);
        }
    }
    return round;
}

/// A font in which a 1 is narrower than a 0, if there is one; else the usual one.
QFont unevenFont()
{
    QFont font = QApplication::font();
    font.setPixelSize(14);
    for (const QString& family : QFontDatabase::families()) {
        QFont candidate = font;
        candidate.setFamily(family);
        const QFontMetricsF metrics(candidate);
        if (metrics.horizontalAdvance(u'0') - metrics.horizontalAdvance(u'1') > 1)
            return candidate;
    }
    return font;
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
    const QColor seen = picture(empty()).pixelColor(215, 72);
    EXPECT_TRUE(isNear(seen, ground));
    EXPECT_NEAR(seen.alphaF(), 0.96, 0.01);
}

TEST_F(HudWidgetTest, AFaintBorderOfOnePointLiesOnTheGround)
{
    const QImage image = picture(empty());
    constexpr double alpha = 0.96 * 0.88 + 0.12;
    const auto mixed = [](double dark) { return (dark * 0.96 * 0.88 + 0.12) / alpha; };
    const std::array<double, 3> border{mixed(ground[0]), mixed(ground[1]), mixed(ground[2])};

    struct Side {
        QPoint edge;
        QPoint inwards;
    };

    for (const auto& [edge, inwards] : {Side{{215, 0}, {0, 1}}, Side{{215, 144}, {0, -1}},
             Side{{0, 60}, {1, 0}}, Side{{429, 60}, {-1, 0}}}) {
        EXPECT_TRUE(isNear(image.pixelColor(edge), border)) << edge.x() << ',' << edge.y();
        EXPECT_NEAR(image.pixelColor(edge).alphaF(), alpha, 0.01);
        EXPECT_TRUE(isNear(image.pixelColor(edge + inwards), ground));
    }
}

TEST_F(HudWidgetTest, TheCornersOfPanelAndTrackAreCirclesOfTheirRadius)
{
    const QImage image = picture(empty());
    const auto isClear = [](const QColor& seen) { return seen.alpha() == 0; };
    EXPECT_TRUE(isRound(image, {0, 0}, 22, 1, ground, isClear));
    EXPECT_TRUE(isRound(image, frame(20, 18, 390, 7).topLeft(), 3.5, 0, trackGround,
        [](const QColor& seen) { return isNear(seen, ground); }));
}

TEST_F(HudWidgetTest, TheBarsAreRoundAtTheirEnds)
{
    Content content = empty();
    QImage expected = picture(content);
    content.barsVisible = true;
    content.bars = staircaseBars();
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0.76F, 1));
    for (int i = 0; i < barCount; ++i) {
        const Bar& bar = content.bars.at(std::size_t(i));
        const QRectF place(310 + 12 * i, panelHeight - bar.y - bar.height, 4, bar.height);
        painter.drawRoundedRect(place, 2.5, 2.5);
    }
    painter.end();

    const QImage seen = picture(content);
    const int trackTop = frame(20, 18, 390, 7).top(); // The track lies over their feet.
    for (int y = 0; y < trackTop; ++y) {
        for (int x = 310; x < 400; ++x) {
            const QColor drawn = expected.pixelColor(x, y);
            EXPECT_TRUE(
                isNear(seen.pixelColor(x, y), {drawn.redF(), drawn.greenF(), drawn.blueF()}))
                << x << ',' << y;
        }
    }
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

    const QRect besideTheDetail(42 + 255, 0, 430 - 42 - 255, 145);
    for (const bool bars : {false, true}) {
        content = empty();
        content.barsVisible = bars;
        const QImage without = picture(content);
        content.detailLabel = text;
        const QImage with = picture(content);
        EXPECT_NE(without, with);
        EXPECT_EQ(without.copy(besideTheDetail), with.copy(besideTheDetail));
    }

    content = empty();
    content.transcriptLabel = text;
    expectWithin(frame(20, 37, 390, 42), content); // Two lines; glyphs may reach a little over.
}

TEST_F(HudWidgetTest, ARunningTimeDoesNotTremble)
{
    const QFont usual = QApplication::font();
    QApplication::setFont(unevenFont());
    const auto colonOf = [this](const QString& time) {
        Content content = empty();
        content.timeLabel = time;
        return picture(content).copy(QRect(376, 0, 4, panelHeight));
    };
    const QImage colon = colonOf(u"00:00"_s);
    EXPECT_NE(colon, colonOf(QString()));
    for (const QString& time : {u"11:11"_s, u"10:01"_s, u"00:11"_s, u"11:00"_s})
        EXPECT_EQ(colonOf(time), colon) << time.toStdString();
    QApplication::setFont(usual);
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

    // Bluish on the way to the white middle, and through at both ends.
    const auto overTrack = [](std::array<double, 3> light, double alpha) {
        for (std::size_t i = 0; i < light.size(); ++i)
            light.at(i) = light.at(i) * alpha + trackGround.at(i) * (1 - alpha);
        return light;
    };
    const auto lightAt = [&](int x) { return image.pixelColor(120 + x, track.center().y()); };
    EXPECT_TRUE(isNear(lightAt(0), trackGround));
    EXPECT_TRUE(isNear(lightAt(36), overTrack({0, 0.78, 1}, 0.85)));
    EXPECT_TRUE(isNear(lightAt(113), overTrack({0.12, 0.45, 1}, 0.8)));
    EXPECT_TRUE(isNear(lightAt(149), trackGround));

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

TEST_F(HudWidgetTest, TheLongestReasonIsWholeWithinItsPlace)
{
    Content content = empty();
    content.detailLabel = u"目标应用没有暴露可写入的焦点控件；请按 Ctrl+V"_s;
    const QImage whole = picture(content);
    expectWithin(frame(42, 79, 255, 20), content);
    content.detailLabel += u"."_s;
    EXPECT_NE(picture(content), whole);
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
