#pragma once

#include "app/pages/OverviewContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

namespace tavrin {
class Localization;
class OverviewController;
struct LocalizedText;
} // namespace tavrin

namespace tavrin::ui {

class Label;

/// How much was dictated, and which keys start it.
class OverviewPage final : public Page, public View<OverviewContent> {
    Q_OBJECT

public:
    /// @param controller, localization must outlive the page.
    OverviewPage(QWidget& parent, OverviewController& controller, const Localization& localization);
    ~OverviewPage() override;

    OverviewPage(const OverviewPage&) = delete;
    OverviewPage& operator=(const OverviewPage&) = delete;

    void setContent(const OverviewContent& content) override;
    void pageShown() override;
    void pageHidden() override;

private:
    /// A number and what it counts.
    struct Figure {
        Label* label = nullptr;
        QString caption;
        QString unit; ///< Empty where the number has it.
    };

    /// A card with a large number.
    [[nodiscard]] Figure addPeriod(int x, const LocalizedText& caption, const QColor& color);
    /// A card with a symbol and a number.
    [[nodiscard]] Figure addTotal(
        const QRect& frame, const QString& symbol, const LocalizedText& caption);
    void addPeriods();
    void addTotals();
    void addNote();
    void addShortcuts();
    static void showFigure(const Figure& figure, const QString& value);
    static void showLarge(const Figure& figure, const QString& value);
    void placeSpeedUnit();

    OverviewController& m_controller;
    const Localization& m_localization;
    Figure m_today;
    Figure m_week;
    Figure m_month;
    Figure m_totalTime;
    Figure m_totalCharacters;
    Figure m_timeSaved;
    Figure m_speed;
    Label* m_speedUnit = nullptr;
    Label* m_instructionLabel = nullptr;
};

} // namespace tavrin::ui
