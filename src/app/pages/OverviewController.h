#pragma once

#include "app/pages/DayWatch.h"
#include "app/pages/OverviewContent.h"
#include "app/windows/View.h"
#include "base/CallbackGuard.h"
#include "base/Seconds.h"

#include <QLocale>
#include <QTimeZone>

#include <functional>

namespace tavrin {

class Clock;
class HistoryStore;
class MainQueue;
class ShortcutSettings;
struct UsageFigures;

/// The overview page: how much was dictated, by what the history still holds, and which keys start
/// it. Main thread only.
class OverviewController {
public:
    struct Neighbours {
        const Clock& clock;
        HistoryStore& historyStore;
        MainQueue& mainQueue;
        ShortcutSettings& shortcutSettings;
        /// How the user writes numbers, and where his days begin; asked anew for each refresh.
        std::function<QLocale()> locale = &QLocale::system;
        std::function<QTimeZone()> timeZone = &QTimeZone::systemTimeZone;
    };

    /// @param neighbours must outlive this object.
    explicit OverviewController(Neighbours neighbours);

    /// The page; null while there is none.
    void setView(View<OverviewContent>* view) { m_view = view; }

    /// What it shows: the figures of the last refresh, and the shortcuts of the moment.
    [[nodiscard]] OverviewContent content();

    /// Shows the figures of the history as it is now; when it is read, where it is not yet.
    void refreshDashboardUsage();

    /// Shows the shortcuts of the moment.
    void refreshShortcuts();

    /// From pageShown() to pageHidden() the figures follow the day.
    void pageShown() { m_day.begin(); }

    void pageHidden() { m_day.end(); }

private:
    void takeFigures(const UsageFigures& figures);
    void show();

    Neighbours m_neighbours;
    OverviewContent m_content;
    View<OverviewContent>* m_view = nullptr;
    DayWatch m_day;
    CallbackGuard m_guard;
};

/// @p duration in minutes, or in hours and minutes from an hour on: "59 min", "1 h 0 min".
/// @param duration not negative, 1e15 s at most.
[[nodiscard]] QString durationText(Seconds duration);

} // namespace tavrin
