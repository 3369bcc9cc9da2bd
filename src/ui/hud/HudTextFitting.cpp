#include "ui/hud/HudTextFitting.h"

#include <algorithm>

namespace tavrin::hud {
namespace {

constexpr double smallestSize = 9; // Which is still read at a glance.
constexpr double sizeStep = 0.5;

} // namespace

double fittingSize(
    double asked, double available, const std::function<double(double size)>& widthAt)
{
    double size = asked;
    while (size > smallestSize && widthAt(size) > available)
        size = std::max(size - sizeStep, smallestSize);
    return size;
}

QList<double> tabularWidths(const QString& text, const TextWidth& widthOf)
{
    double digit = 0;
    for (char16_t character = u'0'; character <= u'9'; ++character)
        digit = std::max(digit, widthOf(QChar(character)));
    QList<double> widths;
    for (const QChar character : text)
        widths.append(character.isDigit() ? digit : widthOf(character));
    return widths;
}

} // namespace tavrin::hud
