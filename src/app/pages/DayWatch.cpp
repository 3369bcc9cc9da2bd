#include "app/pages/DayWatch.h"

#include "platform/Clock.h"
#include "platform/MainQueue.h"

#include <QDateTime>

#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds lookInterval = 60s;

} // namespace

DayWatch::DayWatch(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

DayWatch::~DayWatch() = default;

void DayWatch::begin()
{
    m_timer = m_neighbours.mainQueue.every(lookInterval, [this] { look(); });
    look();
}

void DayWatch::end()
{
    m_timer.reset();
}

void DayWatch::look()
{
    const auto seconds = static_cast<qint64>(m_neighbours.clock.sinceEpoch().count());
    const QDate day = QDateTime::fromSecsSinceEpoch(seconds, m_neighbours.timeZone()).date();
    const QDate before = std::exchange(m_day, day);
    if (before.isValid() && before != day)
        m_neighbours.dayBegan();
}

} // namespace tavrin
