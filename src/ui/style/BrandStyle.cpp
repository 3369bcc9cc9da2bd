#include "ui/style/BrandStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QPalette>
#include <QScreen>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace tavrin::brand {
namespace {

QColor sRgb(float red, float green, float blue)
{
    return QColor::fromRgbF(red, green, blue);
}

} // namespace

QColor tavPurple()
{
    return sRgb(0.435F, 0.333F, 0.965F);
}

QColor tavWarmBackground()
{
    return sRgb(0.98F, 0.973F, 0.945F);
}

QColor tavSidebar()
{
    return sRgb(0.973F, 0.961F, 0.902F);
}

QColor tavBorder()
{
    return sRgb(0.91F, 0.886F, 0.824F);
}

QColor tavSecondaryText()
{
    return sRgb(0.467F, 0.455F, 0.424F);
}

QColor labelColor()
{
    return sRgb(0.15F, 0.14F, 0.12F);
}

QColor secondaryLabelColor()
{
    return {0x6A, 0x67, 0x5E};
}

QColor disabledText()
{
    return {0xA8, 0xA3, 0x95};
}

QColor deepPurple()
{
    return sRgb(0.29F, 0.19F, 0.72F);
}

QColor blue()
{
    return sRgb(0.05F, 0.34F, 0.70F);
}

QColor green()
{
    return sRgb(0.13F, 0.52F, 0.31F);
}

QColor systemOrange()
{
    return {0xA6, 0x56, 0x00};
}

QColor systemRed()
{
    return {0xC0, 0x34, 0x2B};
}

QColor purpleHover()
{
    return {0x60, 0x46, 0xE4};
}

QColor purplePressed()
{
    return {0x52, 0x38, 0xCC};
}

QColor purpleDisabled()
{
    return {0xD9, 0xD2, 0xFC};
}

QColor tint()
{
    return {0xF2, 0xEF, 0xFE};
}

QColor match()
{
    return {0xE4, 0xDC, 0xFF};
}

QColor fieldBackground()
{
    return sRgb(0.995F, 0.994F, 0.985F);
}

QColor hover()
{
    return {0xFB, 0xF9, 0xF2};
}

QColor pressed()
{
    return {0xF3, 0xEF, 0xE3};
}

QColor borderHover()
{
    return {0xD9, 0xD1, 0xBC};
}

QColor popupBorderHover()
{
    return {0xD0, 0xC6, 0xF7};
}

QColor sand()
{
    return {0xF3, 0xEF, 0xE2};
}

QColor hairline()
{
    return {0xF0, 0xEB, 0xDD};
}

QColor track()
{
    return {0x8F, 0x89, 0x79};
}

QColor wash()
{
    return {0xFF, 0xF6, 0xE8};
}

QFont tavPageTitleFont()
{
    return systemFont(27, QFont::Bold);
}

QFont tavCardTitleFont()
{
    return systemFont(16, QFont::DemiBold);
}

QFont tavRowTitleFont()
{
    return systemFont(13, QFont::DemiBold);
}

QFont tavBodyFont()
{
    return systemFont(12.5, QFont::Normal);
}

QFont tavCaptionFont()
{
    return systemFont(11.5, QFont::Normal);
}

QFont tavControlFont()
{
    return systemFont(13, QFont::Medium);
}

QFont tavSubtitleFont()
{
    return systemFont(14, QFont::Normal);
}

QFont tavSidebarFont()
{
    return systemFont(14, QFont::DemiBold);
}

QFont tavSectionFont()
{
    constexpr double spacing = 0.6;
    QFont font = systemFont(11, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return font;
}

QFont tavFigureFont()
{
    return systemFont(27, QFont::Bold);
}

QFont tavSmallFigureFont()
{
    return systemFont(20, QFont::DemiBold);
}

QFont tavBadgeFont()
{
    return systemFont(11, QFont::Normal);
}

QFont systemFont(double size, QFont::Weight weight)
{
    // Fractions of a pixel can be asked for in typographic points only.
    constexpr double pointsPerInch = 72;
    QFont font = QApplication::font();
    font.setPointSizeF(
        size * pointsPerInch / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    font.setWeight(weight);
    return font;
}

void useGlyphsOf(const QString& interfaceLanguage)
{
    QFont font = QApplication::font();
    // The system font by its real name: a list with an alias ("Sans Serif") skips to the next one.
    font.setFamilies({QFontInfo(font).family(),
        interfaceLanguage == "zh-Hant"_L1 ? u"Noto Sans CJK TC"_s : u"Noto Sans CJK SC"_s});
    QApplication::setFont(font);
}

void applyBrandControlStylesInView(QWidget& window)
{
    QPalette palette;
    palette.setColor(QPalette::Window, tavWarmBackground());
    palette.setColor(QPalette::WindowText, labelColor());
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, labelColor());
    palette.setColor(QPalette::Highlight, tavPurple());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, secondaryLabelColor());
    window.setPalette(palette);
    window.setAutoFillBackground(true);
}

} // namespace tavrin::brand
