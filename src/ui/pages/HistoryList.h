#pragma once

#include "ui/pages/HistoryLayout.h"
#include "ui/pages/RecordCard.h"

#include <QAbstractScrollArea>

#include <vector>

namespace tavrin {
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Panel;

/// The records of the history in a list that scrolls, under the headings of their days. However
/// many there are, only those in sight are widgets, and become others as the list moves. The
/// keyboard reaches those in sight by Tab, and all others by the arrow keys, Page Up and Down, Home
/// and End; it stays with its record.
class HistoryList final : public QAbstractScrollArea {
    Q_OBJECT

public:
    struct Content {
        HistoryRows rows;
        QSet<QString> openedRecordIDs;
        QString copiedRecordID;
        QString query;
    };

    /// @param frame from the bottom left of @p parent, 590 × 398 points.
    /// @param localization must outlive the list.
    HistoryList(QWidget& parent, const QRect& frame, const Localization& localization,
        const RecordCard::Actions& actions);

    /// Shows @p content, from the top or in the place where the list is: what is seen stays there
    /// when a record arrives above it or goes.
    void setContent(const Content& content, bool fromTop);

    /// Gives the keyboard to the first record in sight. False when there is none.
    bool takeKeyboard(Qt::FocusReason reason);

    /// The cards from top to bottom, those that are hidden too.
    [[nodiscard]] const std::vector<RecordCard*>& cards() const { return m_cards; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What the keyboard is on.
    struct Place {
        qsizetype row = -1;
        std::size_t control = 0; ///< Of RecordCard::controls().
    };

    /// Where the list stands: the record that is first in sight, and how far above the edge it
    /// begins.
    struct Anchor {
        QString id;
        int above = 0;
    };

    void addCard(const Localization& localization, const RecordCard::Actions& actions);
    [[nodiscard]] Anchor anchor() const;
    void restore(const Anchor& anchor);
    void layOut();
    void fillCards();
    [[nodiscard]] RecordCard::Content contentOf(qsizetype row) const;
    [[nodiscard]] const QString& dayOf(qsizetype row) const;
    [[nodiscard]] bool hasKeyboard() const;
    void moveKeyboard();
    [[nodiscard]] RecordCard* cardOf(qsizetype row) const;
    bool handleKey(int key);
    void goTo(qsizetype row);
    void makeVisible(qsizetype row);
    [[nodiscard]] qsizetype rowAt(int y) const;

    Content m_content;
    HistoryLayout m_layout;
    std::vector<RecordCard*> m_cards;
    ui::Panel* m_topBorder = nullptr; ///< Shown while something is above what is seen.
    qsizetype m_firstRow = 0; ///< That of the first card.
    bool m_isStale = true; ///< The cards show what is no longer so.
    bool m_isFilling = false; ///< The cards are given to other rows, and the keyboard follows.
    Place m_current; ///< What has the keyboard, or had it last.
};

} // namespace tavrin::ui
