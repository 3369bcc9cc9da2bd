#include "ui/BrandStyle.h"

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

void applyBrandPalette(QWidget& window)
{
    QPalette palette;
    palette.setColor(QPalette::Window, tavWarmBackground());
    palette.setColor(QPalette::WindowText, labelColor());
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, labelColor());
    palette.setColor(QPalette::Highlight, tavPurple());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, tavSecondaryText());
    window.setPalette(palette);
    window.setAutoFillBackground(true);
}

} // namespace tavrin::brand
