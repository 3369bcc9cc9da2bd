#pragma once

#include "app/health/HealthContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

#include <QFont>
#include <QHash>

#include <functional>
#include <optional>

namespace tavrin {

class HealthController;
class Localization;

} // namespace tavrin

namespace tavrin::ui {

class Button;
class Card;
class Panel;

/// The permissions and health page: five rows, below them on some desktops a card with notes, and
/// when it was all looked at.
class HealthPage final : public Page, public View<HealthContent> {
    Q_OBJECT

public:
    /// @param controller shows the page its content; it and @p localization outlive the page.
    HealthPage(QWidget& parent, HealthController& controller, const Localization& localization);
    ~HealthPage() override;

    HealthPage(const HealthPage&) = delete;
    HealthPage& operator=(const HealthPage&) = delete;

    void setContent(const HealthContent& content) override;
    [[nodiscard]] QWidget* firstControl() const override;
    void pageShown() override;
    void pageHidden() override;

    /// How notes stand in their card, in points.
    struct NoteSpacing {
        int padding; ///< Above and below the text of one, together.
        int mostLines;
        int leastHeight; ///< Of one.
    };

private:
    void addHealthRowTo(QWidget& area, const QString& key, const QString& title, int y,
        const QString& button, std::function<void()> action);
    void fitTitles();
    void showRow(const QString& key, const HealthRow& row);
    void fitStatuses(const HealthContent& content);
    void showNotes(const QList<HealthNote>& notes);
    /// Adds @p note to the card, with its lower edge at @p y.
    void addNote(Card& card, const HealthNote& note, int y);
    [[nodiscard]] int heightOf(const HealthNote& note) const;

    HealthController& m_controller;
    QHash<QString, Label*> m_healthTitles; ///< By the key of the row, like the next.
    QHash<QString, Label*> m_healthLabels;
    QHash<QString, Button*> m_healthButtons;
    QHash<QString, Panel*> m_washes; ///< Behind a row with a problem.
    NoteSpacing m_noteSpacing{};
    QFont m_titleFont; ///< Of all titles.
    QFont m_statusFont; ///< Of all statuses and notes.
    Card* m_noteCard = nullptr; ///< Null without notes.
    std::optional<QList<HealthNote>> m_notes; ///< As shown; empty before, and to draw them anew.
    QWidget* m_updatedPlace = nullptr; ///< Of the label, which it moves along.
    Label* m_healthUpdatedLabel = nullptr;
};

} // namespace tavrin::ui
