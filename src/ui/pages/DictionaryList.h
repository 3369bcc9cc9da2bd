#pragma once

#include "app/pages/DictionaryContent.h"

#include <QAbstractScrollArea>

#include <functional>
#include <vector>

namespace tavrin {
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class ScrollBar;
class TermRow;

/// The terms in a list that scrolls. However many there are, only the rows in sight are widgets,
/// and are given other terms as the list moves. The keyboard reaches the buttons in sight by Tab,
/// and all others by the arrow keys, Page Up and Down, Home and End; it stays with its term.
class DictionaryList final : public QAbstractScrollArea {
    Q_OBJECT

public:
    using Handler = std::function<void(const QString& identifier)>;

    struct Actions {
        Handler editTerm;
        Handler deleteTerm;
    };

    /// Five rows high, in the middle of @p card, with a bar at its right edge.
    /// @param localization must outlive the list.
    DictionaryList(QWidget& card, const Localization& localization, Actions actions);

    /// Shows @p rows, from the top or in the place where the list is: its first row in sight stays.
    void setRows(const QList<DictionaryRow>& rows, bool fromTop);

    void showTop();

    /// Gives the keyboard to the first term.
    void goToTop() { goTo(0); }

    /// The rows from top to bottom, those that are hidden too.
    [[nodiscard]] const std::vector<TermRow*>& rowsInSight() const { return m_slots; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// A button of the list, by its row and its place in it.
    struct Place {
        qsizetype row = -1;
        std::size_t button = 0;
    };

    void addBar(QWidget& card);
    void addSlot(const Localization& localization);
    void fillSlots();
    [[nodiscard]] bool hasKeyboard() const;
    void moveKeyboard();
    bool handleKey(int key);
    void goTo(qsizetype row);
    void makeVisible(qsizetype row);
    [[nodiscard]] qsizetype firstRow() const;
    [[nodiscard]] qsizetype rowOf(const QString& identifier) const;

    Actions m_actions;
    QList<DictionaryRow> m_rows;
    std::vector<TermRow*> m_slots;
    Place m_current; ///< What has the keyboard, or had it last.
};

} // namespace tavrin::ui
