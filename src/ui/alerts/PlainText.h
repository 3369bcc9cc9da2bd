#pragma once

#include <QTextEdit>

namespace tavrin::ui {

/// A text of any length and content in a given width: shown as it is, never as rich text, wrapped
/// also inside long words, scrolled when it is too tall, and selectable.
class PlainText final : public QTextEdit {
    Q_OBJECT

public:
    struct Look {
        QFont font;
        QColor color;
        int lineHeight; ///< In points.
    };

    PlainText(QWidget& parent, const QString& text, const Look& look);

    /// Takes the height that the text needs at @p width, at most @p tallest.
    void fit(int width, int tallest);
};

} // namespace tavrin::ui
