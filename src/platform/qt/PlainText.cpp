#include "platform/qt/PlainText.h"

#include <QScrollBar>

#include <cmath>

namespace tavrin {
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

PlainText::PlainText(const QString& text, const QFont& font, QWidget* parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setFont(font);
    setPlainText(bounded(text));
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

} // namespace tavrin
