#include "ui/alerts/PlainText.h"

#include "ui/controls/ScrollBar.h"

#include <QTextBlockFormat>

#include <cmath>

namespace tavrin::ui {
namespace {

// More than anybody reads in an alert, and little enough to be laid out at once.
constexpr qsizetype longestText = 20'000;

QString bounded(const QString& text)
{
    if (text.size() <= longestText)
        return text;
    const qsizetype end = text[longestText - 1].isHighSurrogate() ? longestText - 1 : longestText;
    return text.first(end) + QStringLiteral("…");
}

} // namespace

PlainText::PlainText(QWidget& parent, const QString& text, const Look& look)
    : QTextEdit(&parent)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new ScrollBar(this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, look.color);
    setPalette(colors);
    document()->setDocumentMargin(0);
    setFont(look.font);
    setPlainText(bounded(text));
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    QTextBlockFormat lines;
    lines.setLineHeight(look.lineHeight, QTextBlockFormat::FixedHeight);
    all.mergeBlockFormat(lines);
}

void PlainText::fit(int width, int tallest)
{
    setFixedWidth(width);
    document()->setTextWidth(width);
    int height = static_cast<int>(std::ceil(document()->size().height()));
    if (height > tallest) {
        height = tallest;
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    }
    setFixedHeight(height);
}

} // namespace tavrin::ui
