#pragma once

#include "ui/controls/TextLines.h"

#include <QLabel>

namespace tavrin::ui {

/// @p text for a tool tip, which takes anything with a tag in it for markup: its beginning, as it
/// is.
[[nodiscard]] QString plainToolTip(const QString& text);

/// A plain text in a frame. One that is too wide is made smaller or given a second line, as its
/// Fitting says, and last an ellipsis; its tool tip then shows the whole. The screen reader always
/// has the whole.
class Label final : public QLabel {
    Q_OBJECT

public:
    /// Where a second line goes: about the centre of the frame, or below its first line.
    enum class SecondLine { Centred, Below };

    /// @param frame in points from the bottom left of @p parent, which has its size.
    Label(QWidget& parent, const QRect& frame, const QFont& font, const QColor& color,
        const QString& text = {});

    void setFullText(const QString& text);

    [[nodiscard]] const QString& fullText() const { return m_text; }

    void setFont(const QFont& font);
    void setColor(const QColor& color);

    /// Before the first text, or the present one is fitted anew.
    void setFitting(const Fitting& fitting);
    void setSecondLine(SecondLine place, int lineHeight);

    /// Shows the whole text as tool tip even where it fits.
    void setTextAsToolTip();

    void setAlignment(Qt::Alignment alignment);

    /// Whether an ellipsis stands for a part of it.
    [[nodiscard]] bool isElided() const { return m_shown.isElided; }

    /// How many lines are shown.
    [[nodiscard]] qsizetype lineCount() const { return m_shown.lines.size(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fit();

    QString m_text;
    QFont m_font;
    QRect m_frame; ///< In the parent's coordinates.
    Fitting m_fitting;
    SecondLine m_secondLine = SecondLine::Centred;
    int m_lineHeight;
    bool m_textIsToolTip = false;
    TextLines m_shown;
};

} // namespace tavrin::ui
