#include "app/settings/Localization.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Page.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Popup.h"
#include "ui/controls/Segments.h"
#include "ui/controls/TextField.h"
#include "ui/style/BrandStyle.h"
#include "ui/window/Sidebar.h"

#include <QImage>
#include <QRadioButton>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

using Rgb = std::array<double, 3>; ///< From 0 to 1.

const QColor accent(0x6F, 0x55, 0xF6);
const QColor border(0xE8, 0xE2, 0xD2);
const QColor field(254, 253, 251); // 0.995, 0.994 and 0.985 of 255.

/// How much of a shadow is left so many points outside of the edge of a large box.
double shadeOutside(double distance, double deviation)
{
    return std::erfc(distance / deviation / std::numbers::sqrt2) / 2;
}

void expectColor(const QColor& shown, const Rgb& below, const Rgb& above, double opacity)
{
    constexpr double tolerance = 2; // A faint colour of eight bits is coarse.
    EXPECT_NEAR(shown.red(), 255 * std::lerp(below[0], above[0], opacity), tolerance);
    EXPECT_NEAR(shown.green(), 255 * std::lerp(below[1], above[1], opacity), tolerance);
    EXPECT_NEAR(shown.blue(), 255 * std::lerp(below[2], above[2], opacity), tolerance);
}

/// What @p widget itself draws, and nothing behind it, with so many pixels to a point.
QImage drawn(QWidget& widget, int ratio = 1)
{
    QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The radius of the corner at the top left, by what it leaves open of its square.
double cornerRadius(QWidget& widget)
{
    constexpr int ratio = 8;
    const QImage image = drawn(widget, ratio);
    const int side = std::min(20 * ratio, image.height() / 2);
    double open = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            open += 1 - image.pixelColor(x, y).alphaF();
    }
    return std::sqrt(open / (1 - std::numbers::pi / 4)) / ratio;
}

class StylingTest : public ::testing::Test {
protected:
    QWidget window;

    StylingTest()
    {
        window.resize(820, 640);
        brand::applyBrandControlStylesInView(window);
    }

    [[nodiscard]] QImage picture()
    {
        window.show();
        return window.grab().toImage();
    }
};

TEST_F(StylingTest, TheShadowsHaveTheirColoursSizesAndOffsets)
{
    constexpr float step = 1.0F / 65535;
    const Shadow card = cardShadow();
    EXPECT_NEAR(card.color.redF(), 0.2F, step);
    EXPECT_NEAR(card.color.greenF(), 0.17F, step);
    EXPECT_NEAR(card.color.blueF(), 0.1F, step);
    EXPECT_NEAR(card.color.alphaF(), 0.1F, step);
    EXPECT_EQ(card.blur, 12);
    EXPECT_EQ(card.down, 2);

    const Shadow selection = selectionShadow();
    EXPECT_NEAR(selection.color.redF(), 0.22F, step);
    EXPECT_NEAR(selection.color.greenF(), 0.18F, step);
    EXPECT_NEAR(selection.color.blueF(), 0.1F, step);
    EXPECT_NEAR(selection.color.alphaF(), 0.08F, step);
    EXPECT_EQ(selection.blur, 6);
    EXPECT_EQ(selection.down, 1);
}

TEST_F(StylingTest, ACardOnAPageHasAShadowAroundItALittleLower)
{
    Page page(window, u"Title"_s, u"Subtitle"_s);
    const Card card(page, {50, 200, 500, 250});
    const QImage image = picture();
    constexpr Rgb warm{0.98, 0.973, 0.945};
    constexpr Rgb shadow{0.2, 0.17, 0.1};
    constexpr int middle = 190 + 300;
    constexpr int top = 640 - 200 - 250;
    constexpr int bottom = 640 - 200;
    for (const int away : {0, 6, 12}) {
        expectColor(image.pixelColor(middle, bottom + away), warm, shadow,
            0.1 * shadeOutside(away + 0.5 - 2, 12));
        expectColor(image.pixelColor(middle, top - 1 - away), warm, shadow,
            0.1 * shadeOutside(away + 0.5 + 2, 12));
    }
    EXPECT_LT(image.pixelColor(middle, bottom).red(), image.pixelColor(middle, top - 1).red());
}

TEST_F(StylingTest, TheSelectedButtonOfTheSidebarAloneHasAShadow)
{
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    const Localization localization(preferences, workspace, KeyNames());
    Sidebar sidebar(window, localization, {}, [](SettingsPage) {});
    MainWindowContent content;
    content.isSignedIn = true;
    content.page = SettingsPage::History;
    sidebar.setContent(content);
    const QImage image = picture();
    constexpr Rgb background{0.973, 0.961, 0.902};
    constexpr Rgb shadow{0.22, 0.18, 0.1};
    constexpr int middle = 14 + 71;
    constexpr int bottom = 640 - 446;
    expectColor(image.pixelColor(middle, bottom), background, shadow, 0.08 * shadeOutside(-0.5, 6));
    expectColor(
        image.pixelColor(middle, bottom - 41), background, shadow, 0.08 * shadeOutside(1.5, 6));
    EXPECT_LT(image.pixelColor(middle, bottom).red(), image.pixelColor(middle, bottom - 41).red());
    EXPECT_EQ(image.pixelColor(middle, 640 - 226), QColor(0xF8, 0xF5, 0xE6)); // Below another one.
}

TEST_F(StylingTest, EveryControlHasItsRadius)
{
    Button primary(window, {20, 20, 112, 36}, {}, Button::Look::Primary);
    Button secondary(window, {20, 80, 112, 36}, {}, Button::Look::Secondary);
    Popup popup(window, {20, 140, 170, 30}, u"Retention"_s);
    TextField plain(window, {20, 200, 300, 32}, {});
    SidebarButton sidebarButton(window, u"Overview"_s, 490);
    sidebarButton.setChecked(true);
    Card card(window, {200, 300, 200, 100}, 14);

    constexpr double tolerance = 0.15;
    EXPECT_NEAR(cornerRadius(primary), 11, tolerance);
    EXPECT_NEAR(cornerRadius(secondary), 10, tolerance);
    EXPECT_NEAR(cornerRadius(popup), 9, tolerance);
    EXPECT_NEAR(cornerRadius(plain), 9, tolerance);
    EXPECT_NEAR(cornerRadius(sidebarButton), 10, tolerance);
    EXPECT_NEAR(cornerRadius(card), 14, tolerance);
}

TEST_F(StylingTest, FieldsPopupsAndCardsHaveABorderOfOnePoint)
{
    TextField plain(window, {20, 200, 300, 32}, {});
    TextField secure(window, {20, 250, 300, 32}, {}, TextField::Kind::Secure);
    Popup popup(window, {20, 140, 300, 32}, u"Retention"_s);
    Card card(window, {400, 300, 300, 72});
    for (const auto& [widget, fill] :
        {std::pair<QWidget*, QColor>(&plain, field), std::pair<QWidget*, QColor>(&secure, field),
            std::pair<QWidget*, QColor>(&popup, field),
            std::pair<QWidget*, QColor>(&card, Qt::white)}) {
        const QImage image = drawn(*widget);
        const int bottom = image.height() - 1;
        EXPECT_EQ(image.pixelColor(150, 0), border);
        EXPECT_EQ(image.pixelColor(150, 1), fill);
        EXPECT_EQ(image.pixelColor(150, bottom - 1), fill);
        EXPECT_EQ(image.pixelColor(150, bottom), border);
        EXPECT_EQ(image.pixelColor(0, bottom / 2), border);
        EXPECT_EQ(image.pixelColor(1, bottom / 2), fill);
        EXPECT_EQ(image.pixelColor(299, bottom / 2), border);
    }
}

TEST_F(StylingTest, WhatAPopupShowsIsTintedWithTheAccent)
{
    Popup popup(window, {20, 140, 170, 30}, u"Retention"_s);
    popup.setItems({u"MMMMMMM"_s}, 0);
    constexpr int ratio = 8;
    const QImage image = drawn(popup, ratio);
    const auto inked = [&image](int left, int right) {
        int pixels = 0;
        for (int y = 2 * ratio; y < 28 * ratio; ++y) {
            for (int x = left * ratio; x < right * ratio; ++x)
                pixels += image.pixelColor(x, y) == accent ? 1 : 0;
        }
        return static_cast<double>(pixels) / ratio / ratio;
    };
    EXPECT_GT(inked(10, 146), 7 * 10); // Two stems to a letter, each thicker than a point.
    EXPECT_GT(inked(152, 162), 2); // The thin chevron.
}

TEST_F(StylingTest, TheSelectedSegmentIsInTheAccent)
{
    Segments segments(window, {20, 20, 300, 34}, {u"All"_s, u"Learned"_s, u"Manual"_s});
    segments.setSelected(1);
    const QImage image = drawn(segments);
    EXPECT_EQ(image.pixelColor(150, 4), accent);
    EXPECT_NE(image.pixelColor(50, 4), accent);
    EXPECT_NE(image.pixelColor(250, 4), accent);
}

TEST_F(StylingTest, FieldsAreWrittenInTheFontOfControls)
{
    const TextField plain(window, {20, 200, 300, 32}, {});
    EXPECT_EQ(plain.font(), brand::tavControlFont());
}

} // namespace
} // namespace tavrin::ui
