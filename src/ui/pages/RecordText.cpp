#include "ui/pages/RecordText.h"

#include "app/pages/history/HistoryFind.h"
#include "ui/controls/Painting.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavrin::ui {
namespace {

constexpr QChar ellipsis = u'…';

/// @p text with its line breaks as Qt's layouts want them, and of the same length.
QString prepared(const QString& text)
{
    QString result = text;
    for (QChar& character : result) {
        if (character == u'\n' || character == QChar::ParagraphSeparator)
            character = QChar::LineSeparator;
        else if (character == u'\r' || character == u'\t' || character == QChar::Null)
            character = u' ';
    }
    return result;
}

/// At most @p units of @p text, and an ellipsis for what follows.
QString beginning(const QString& text, qsizetype units)
{
    return text.size() > units ? prepared(text.left(units)) + ellipsis : prepared(text);
}

/// A little before the match at @p place, at the beginning of a word where one is near.
qsizetype excerptBegin(const QString& text, qsizetype place)
{
    constexpr qsizetype context = 24;
    const qsizetype begin = std::max<qsizetype>(place - context, 0);
    const qsizetype space = text.indexOf(u' ', begin);
    return space >= 0 && space < place ? space + 1 : begin;
}

QTextOption inLines(QTextOption::WrapMode mode)
{
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(mode);
    return option;
}

} // namespace

struct RecordText::Line {
    QString text;
    qsizetype start = 0; // In the text that was laid out.
    QTextLayout layout;
    QList<TextRange> marked; // Of the line.
};

RecordText::RecordText() = default;
RecordText::~RecordText() = default;

void RecordText::setText(const QString& text, const Options& options)
{
    const QString whole = text.trimmed(); // White space at the end is not worth a line.
    QString shown = beginning(whole, options.mostUnits);
    m_isElided = shown.size() > options.mostUnits;
    qsizetype seen = layOut(shown, options);
    const qsizetype match =
        options.query.isEmpty() ? -1 : whole.indexOf(options.query, 0, Qt::CaseInsensitive);
    if (m_isElided && match >= 0 && match + options.query.size() > seen) {
        shown = ellipsis + beginning(whole.mid(excerptBegin(whole, match)), options.mostUnits);
        seen = layOut(shown, options);
    }
    mark(shown.left(seen), options.query);
}

qsizetype RecordText::layOut(const QString& text, const Options& options)
{
    m_lines.clear();
    QTextLayout layout(text, options.font);
    layout.setTextOption(inLines(QTextOption::WrapAtWordBoundaryOrAnywhere));
    layout.beginLayout();
    qsizetype seen = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(options.width);
        const qsizetype start = line.textStart();
        if (lineCount() + 1 < options.mostLines) {
            seen = start + line.textLength();
            addLine(text.mid(start, line.textLength()), start, options);
            continue;
        }
        // A line break in the last line stands for lines that are left out.
        QString rest = text.mid(start);
        const qsizetype lineBreak = rest.indexOf(QChar::LineSeparator);
        if (lineBreak >= 0)
            rest = rest.left(lineBreak) + ellipsis;
        const QString fitting =
            QFontMetricsF(options.font).elidedText(rest, Qt::ElideRight, options.width);
        m_isElided = m_isElided || lineBreak >= 0 || fitting != rest;
        seen = start + fitting.size() - (fitting.endsWith(ellipsis) ? 1 : 0);
        addLine(fitting, start, options);
        break;
    }
    layout.endLayout();
    return seen;
}

void RecordText::addLine(const QString& text, qsizetype start, const Options& options)
{
    auto line = std::make_unique<Line>();
    line->text = text;
    line->text.remove(QChar::LineSeparator); // At the end alone.
    line->start = start;
    line->layout.setText(line->text);
    line->layout.setFont(options.font);
    line->layout.setTextOption(inLines(QTextOption::NoWrap));
    line->layout.setCacheEnabled(true);
    line->layout.beginLayout();
    QTextLine only = line->layout.createLine();
    if (only.isValid())
        only.setLineWidth(options.width);
    line->layout.endLayout();
    m_lines.push_back(std::move(line));
}

void RecordText::mark(const QString& text, const QString& query)
{
    for (const TextRange& place : rangesOf(query, text)) {
        for (const auto& line : m_lines) {
            const qsizetype begin = std::max<qsizetype>(place.location - line->start, 0);
            const qsizetype end =
                std::min<qsizetype>(place.location + place.length - line->start, line->text.size());
            if (begin < end)
                line->marked.append({begin, end - begin});
        }
    }
}

QStringList RecordText::lines() const
{
    QStringList texts;
    for (const auto& line : m_lines)
        texts.append(line->text);
    return texts;
}

QStringList RecordText::marked() const
{
    QStringList texts;
    for (const auto& line : m_lines) {
        for (const TextRange& range : line->marked)
            texts.append(line->text.mid(range.location, range.length));
    }
    return texts;
}

void RecordText::paint(QPainter& painter, const QPointF& topLeft, int lineHeight) const
{
    constexpr double markRadius = 3;
    constexpr double markInset = 2; // Between the lines.
    QPointF place = topLeft;
    for (const auto& line : m_lines) {
        const QTextLine only = line->layout.lineAt(0);
        for (const TextRange& range : line->marked) {
            const double from = only.cursorToX(static_cast<int>(range.location));
            const double to = only.cursorToX(static_cast<int>(range.location + range.length));
            const QRectF box(place.x() + std::min(from, to), place.y() + markInset,
                std::abs(to - from), lineHeight - 2 * markInset);
            drawBox(painter, box, {markRadius, brand::match()});
        }
        // The same baseline whatever fonts the line is made of.
        const QFontMetricsF metrics(line->layout.font());
        const double baseline = place.y() + (lineHeight + metrics.ascent() - metrics.descent()) / 2;
        only.draw(&painter, {place.x(), std::round(baseline) - only.ascent()});
        place.ry() += lineHeight;
    }
}

} // namespace tavrin::ui
