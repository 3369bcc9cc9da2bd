#pragma once

#include <QDate>
#include <QTimeZone>

#include <functional>
#include <memory>

namespace tavrin {

class Clock;
class MainQueue;
class Timer;

/// Tells a page that is being looked at when another day has begun for the user. It looks once a
/// minute instead of waiting for midnight: a computer sleeps through it, and clocks and time zones
/// are changed. Main thread only.
class DayWatch {
public:
    struct Neighbours {
        MainQueue& mainQueue;
        const Clock& clock;
        std::function<QTimeZone()> timeZone; ///< Where the user's days begin; asked at each look.
        std::function<void()> dayBegan;
    };

    /// @param neighbours must outlive this object.
    explicit DayWatch(Neighbours neighbours);
    ~DayWatch();

    DayWatch(const DayWatch&) = delete;
    DayWatch& operator=(const DayWatch&) = delete;

    /// Watches from now on, and tells at once of a day that began since the last watch.
    void begin();
    void end();

private:
    void look();

    Neighbours m_neighbours;
    QDate m_day; // Invalid before the first watch.
    std::unique_ptr<Timer> m_timer; // Null while nobody looks.
};

} // namespace tavrin
