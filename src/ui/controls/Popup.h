#pragma once

#include <QComboBox>

namespace tavrin::ui {

/// A choice from a list, as the brand draws it (`stylePopup`).
class Popup final : public QComboBox {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    /// @param name what is chosen, for screen readers.
    Popup(QWidget& parent, const QRect& frame, const QString& name);

    /// Shows @p titles with the one at @p selected chosen; reports nothing. Keeps the list that is
    /// there when it is the same.
    void setItems(const QStringList& titles, qsizetype selected);

    void showPopup() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// Of the list, on the screen: wide enough for every entry, below the control or above it.
    [[nodiscard]] QRect listPlace() const;
};

} // namespace tavrin::ui
