#include "app/pages/OverviewController.h"

#include "app/pages/OverviewTexts.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "history/HistoryStore.h"
#include "history/UsageFigures.h"
#include "platform/Clock.h"

#include <cmath>
#include <utility>

namespace tavrin {

OverviewController::OverviewController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
    , m_day({m_neighbours.mainQueue, m_neighbours.clock, m_neighbours.timeZone,
          [this] { refreshDashboardUsage(); }})
{
}

OverviewContent OverviewController::content()
{
    OverviewContent content = m_content;
    content.instructionLabel = m_neighbours.shortcutSettings.content().instruction;
    return content;
}

void OverviewController::refreshDashboardUsage()
{
    if (!m_view)
        return;
    m_neighbours.historyStore.whenRead(m_guard.bind([this] {
        takeFigures(usageFigures(m_neighbours.historyStore.historyRecords(),
            m_neighbours.clock.sinceEpoch(), m_neighbours.timeZone()));
        show();
    }));
}

void OverviewController::refreshShortcuts()
{
    show();
}

void OverviewController::takeFigures(const UsageFigures& figures)
{
    QLocale locale = m_neighbours.locale();
    // The locale of a system that names none groups no digits, unless it is asked to.
    locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
    m_content.todayUsageLabel = locale.toString(figures.today);
    m_content.weekUsageLabel = locale.toString(figures.week);
    m_content.monthUsageLabel = locale.toString(figures.month);
    m_content.totalDictationTimeLabel = durationText(figures.audio);
    m_content.totalDictatedCharactersLabel = locale.toString(figures.total);
    m_content.timeSavedLabel = durationText(figures.saved);
    m_content.averageDictationSpeedLabel = locale.toString(figures.speed);
}

void OverviewController::show()
{
    if (m_view)
        m_view->setContent(content());
}

QString durationText(Seconds duration)
{
    constexpr double secondsPerMinute = 60;
    constexpr long minutesPerHour = 60;
    const long minutes = std::lround(duration.count() / secondsPerMinute);
    if (minutes < minutesPerHour)
        return texts::minutesDuration.toString().arg(minutes);
    return texts::hoursDuration.toString()
        .arg(minutes / minutesPerHour)
        .arg(minutes % minutesPerHour);
}

} // namespace tavrin
