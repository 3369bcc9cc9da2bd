#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>
#include <utility>

class QRadioButton;

namespace tavrin::ui {

/// A few choices side by side of which one holds (`styleSegmentedControl`). The arrow keys move
/// between them.
class Segments final : public QWidget {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    Segments(QWidget& parent, const QRect& frame, const QStringList& titles);

    /// Reports nothing.
    void setSelected(qsizetype index);

    [[nodiscard]] qsizetype selected() const;

    /// Called when the user has chosen another one.
    void setHandler(std::function<void(qsizetype index)> handler)
    {
        m_handler = std::move(handler);
    }

    /// The segments from left to right, for the order of the Tab key.
    [[nodiscard]] const QList<QRadioButton*>& buttons() const { return m_buttons; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QList<QRadioButton*> m_buttons;
    std::function<void(qsizetype)> m_handler;
};

} // namespace tavrin::ui
