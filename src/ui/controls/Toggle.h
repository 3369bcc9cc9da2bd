#pragma once

#include <QCheckBox>

namespace tavrin::ui {

/// A box with a tick and a title beside it. Listen to toggled(): screen readers do not click.
class CheckBox final : public QCheckBox {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    CheckBox(QWidget& parent, const QRect& frame, const QString& title);

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

/// A switch without a title; 38 × 22 points. Listen to toggled() here too.
class Switch final : public QCheckBox {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    /// @param name what it switches, for screen readers.
    Switch(QWidget& parent, const QRect& frame, const QString& name);

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

} // namespace tavrin::ui
