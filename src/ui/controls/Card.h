#pragma once

#include <QColor>
#include <QWidget>

namespace tavrin::ui {

/// A white surface with round corners and a border; its shadow is drawn by the Page that it lies on
/// (`styleCard`). The frames of its children count from its outer edge.
class Card final : public QWidget {
    Q_OBJECT

public:
    static constexpr int usualRadius = 16;
    static constexpr int smallRadius = 14;

    /// @param frame from the bottom left of @p parent.
    Card(QWidget& parent, const QRect& frame, int radius = usualRadius);

    [[nodiscard]] int radius() const { return m_radius; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_radius;
};

/// A filled box without border or shadow: behind notes, symbols and rows with a problem.
class Panel final : public QWidget {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    Panel(QWidget& parent, const QRect& frame, int radius, const QColor& fill);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_radius;
    QColor m_fill;
};

/// A line between the rows of a card, as long as @p frame is wide.
[[nodiscard]] Panel* addHairline(QWidget& parent, const QRect& frame);

/// What a row of a card is about, at its left edge; @p y from the bottom of the card. Owned by it.
void addCaption(QWidget& card, int y, const QString& text);

} // namespace tavrin::ui
