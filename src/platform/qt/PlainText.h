#pragma once

#include <QTextEdit>

namespace tavrin {

/// A text of any length and content in a given width: shown as it is, never as rich text, wrapped
/// also inside long words, scrolled when it is too tall, and selectable.
class PlainText final : public QTextEdit {
public:
    PlainText(const QString& text, const QFont& font, QWidget* parent);

    /// Takes the height that the text needs at @p width, at most @p tallest.
    void fit(int width, int tallest);
};

} // namespace tavrin
