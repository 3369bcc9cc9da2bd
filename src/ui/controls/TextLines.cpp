#include "ui/controls/TextLines.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>

namespace tavrin::ui {
namespace {

constexpr double sizeStep = 0.5;
// Narrower than any letter: more characters than the width holds of these are never seen.
constexpr double leastAdvance = 1.5;

QString oneLine(const QString& text, double width, int lines)
{
    const auto most = static_cast<qsizetype>(width / leastAdvance) * lines;
    QString result = text.left(std::max<qsizetype>(most, 1));
    for (QChar& character : result) {
        if (character == u'\n' || character == u'\r' || character == u'\t'
            || character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return result;
}

} // namespace

TextLines fitText(const QString& text, const QFont& font, double width, const Fitting& fitting)
{
    const QString visible = oneLine(text, width, fitting.mostLines);
    QFont smaller = font;
    const double pointsPerStep =
        QFontMetricsF(font).height() > 0 ? font.pointSizeF() / QFontInfo(font).pixelSize() : 1;
    const int steps = static_cast<int>(fitting.mostSmaller / sizeStep);
    for (int step = 0; step <= steps; ++step) {
        smaller.setPointSizeF(font.pointSizeF() - step * sizeStep * pointsPerStep);
        if (QFontMetricsF(smaller).horizontalAdvance(visible) <= width)
            return {smaller, {visible}, false};
    }
    const QStringList lines = wrapText(visible, font, width, fitting.mostLines);
    return {
        font, lines, !lines.isEmpty() && lines.last().endsWith(u'…') && !visible.endsWith(u'…')};
}

QStringList wrapText(const QString& text, const QFont& font, double width, int mostLines)
{
    QString prepared = text.left(static_cast<qsizetype>(width / leastAdvance) * mostLines);
    prepared.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    prepared.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(prepared, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() + 1 < mostLines) {
            lines.append(prepared.mid(line.textStart(), line.textLength())
                             .remove(QChar::LineSeparator)
                             .trimmed());
            continue;
        }
        QString rest = prepared.mid(line.textStart());
        rest.replace(QChar::LineSeparator, u' ');
        lines.append(QFontMetricsF(font).elidedText(rest.trimmed(), Qt::ElideRight, width));
        break;
    }
    layout.endLayout();
    return lines;
}

} // namespace tavrin::ui
