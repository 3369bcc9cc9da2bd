#pragma once

#include "app/pages/history/HistoryRows.h"
#include "ui/pages/RecordText.h"

#include <QWidget>

#include <array>
#include <functional>

class QAbstractButton;

namespace tavrin {
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Button;

/// One record of the history with its buttons. Shows whatever record it is given. Its shadow is
/// drawn by the list that it lies on.
class RecordCard final : public QWidget {
    Q_OBJECT

public:
    static constexpr int cardWidth = 538;
    static constexpr int cardRadius = 14;

    using Handler = std::function<void(const QString& id)>;

    /// What the user does with the record; given its id.
    struct Actions {
        Handler copy;
        Handler toggleOriginal;
        Handler remove;
        Handler toggleWholeText;
    };

    struct Content {
        HistoryRow row;
        QString day; ///< For screen readers, which do not see the headings.
        int lines = 1; ///< For how many there is room.
        bool isOpened = false; ///< All of the text is shown.
        bool isCopied = false;
        QString query; ///< What is marked; empty for nothing.
    };

    /// @param localization must outlive the card.
    RecordCard(QWidget& parent, const Localization& localization, Actions actions);

    void setContent(const Content& content);

    [[nodiscard]] const Content& content() const { return m_content; }

    /// What the keyboard reaches, in reading order: the card itself, Copy, Original or Result,
    /// Delete, and what shows the whole text.
    [[nodiscard]] const std::array<QWidget*, 5>& controls() const { return m_controls; }

    /// There is more text than is seen, or was before it was opened.
    [[nodiscard]] bool canOpen() const { return m_content.isOpened || m_text.isElided(); }

    /// How many lines all of @p text takes, as many as are ever shown at most.
    [[nodiscard]] static int countLines(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void placeControls();
    /// What tells it from every other record.
    [[nodiscard]] QString spokenName() const;
    void nameAfterRecord(Button& button) const;
    void toggleWholeText() const;

    const Localization& m_localization;
    Actions m_actions;
    Content m_content;
    RecordText m_text;
    Button* m_copy;
    Button* m_toggle;
    Button* m_delete;
    QAbstractButton* m_chevron;
    std::array<QWidget*, 5> m_controls;
};

} // namespace tavrin::ui
