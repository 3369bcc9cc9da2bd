#include "ui/style/BrandStyle.h"

#include "support/QtPrinters.h"

#include <QApplication>
#include <QFontInfo>
#include <QScreen>
#include <QWidget>
#include <gtest/gtest.h>

#include <array>

namespace tavrin {
namespace {

struct NamedColor {
    QColor color;
    std::array<float, 3> sRgb;
};

TEST(BrandStyleTest, ThePaletteHasTheColoursOfTheBrand)
{
    for (const auto& [color, sRgb] : {
             NamedColor{brand::tavPurple(), {0.435F, 0.333F, 0.965F}},
             NamedColor{brand::tavWarmBackground(), {0.98F, 0.973F, 0.945F}},
             NamedColor{brand::tavSidebar(), {0.973F, 0.961F, 0.902F}},
             NamedColor{brand::tavBorder(), {0.91F, 0.886F, 0.824F}},
             NamedColor{brand::tavSecondaryText(), {0.467F, 0.455F, 0.424F}},
             NamedColor{brand::fieldBackground(), {0.995F, 0.994F, 0.985F}},
             NamedColor{brand::deepPurple(), {0.29F, 0.19F, 0.72F}},
             NamedColor{brand::blue(), {0.05F, 0.34F, 0.70F}},
         }) {
        constexpr float step = 1.0F / 65535;
        EXPECT_NEAR(color.redF(), sRgb[0], step);
        EXPECT_NEAR(color.greenF(), sRgb[1], step);
        EXPECT_NEAR(color.blueF(), sRgb[2], step);
        EXPECT_EQ(color.alphaF(), 1);
    }
}

struct NamedFont {
    QFont font;
    double size;
    int weight;
};

TEST(BrandStyleTest, TheFontsHaveTheSizesAndWeightsOfTheBrand)
{
    const double dotsPerPoint = QApplication::primaryScreen()->logicalDotsPerInchY() / 72;
    for (const auto& [font, size, weight] : {
             NamedFont{brand::tavPageTitleFont(), 27, QFont::Bold},
             NamedFont{brand::tavCardTitleFont(), 16, QFont::DemiBold},
             NamedFont{brand::tavRowTitleFont(), 13, QFont::DemiBold},
             NamedFont{brand::tavBodyFont(), 12.5, QFont::Normal},
             NamedFont{brand::tavCaptionFont(), 11.5, QFont::Normal},
             NamedFont{brand::tavControlFont(), 13, QFont::Medium},
         }) {
        EXPECT_NEAR(font.pointSizeF() * dotsPerPoint, size, 0.01);
        EXPECT_EQ(font.weight(), weight);
    }
}

TEST(BrandStyleTest, ChineseGlyphsFollowTheInterfaceLanguageBehindTheSystemFont)
{
    const QFont before = QApplication::font();
    const QString system = QFontInfo(before).family();
    for (const auto& [language, family] : {std::pair("zh-Hans", "Noto Sans CJK SC"),
             std::pair("zh-Hant", "Noto Sans CJK TC"), std::pair("en", "Noto Sans CJK SC")}) {
        brand::useGlyphsOf(language);
        EXPECT_EQ(QApplication::font().families(), QStringList({system, family}));
        QApplication::setFont(before);
    }
}

TEST(BrandStyleTest, ADarkDesktopLeavesTextReadable)
{
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    QWidget window;
    window.setPalette(dark);
    brand::applyBrandControlStylesInView(window);

    EXPECT_EQ(window.palette().color(QPalette::Window), brand::tavWarmBackground());
    EXPECT_LT(window.palette().color(QPalette::WindowText).lightness(), 64);
}

} // namespace
} // namespace tavrin
