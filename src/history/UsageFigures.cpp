#include "history/UsageFigures.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrin {
namespace {

constexpr double typedPerMinute = 45; // Characters.
constexpr double secondsPerMinute = 60;
constexpr double longest = 1e15; // Seconds that are added up at most, and the highest speed.

/// Seconds since 1970 at which the periods begin.
struct PeriodStarts {
    double today;
    double week;
    double month;
};

double startOf(QDate day, const QTimeZone& zone)
{
    return static_cast<double>(day.startOfDay(zone).toMSecsSinceEpoch()) / 1000;
}

PeriodStarts periodStarts(Seconds now, const QTimeZone& zone)
{
    const auto milliseconds = static_cast<qint64>(std::floor(now.count() * 1000));
    const QDate today = QDateTime::fromMSecsSinceEpoch(milliseconds, zone).date();
    const QDate monday = today.addDays(Qt::Monday - today.dayOfWeek());
    const QDate first(today.year(), today.month(), 1);
    return {startOf(today, zone), startOf(monday, zone), startOf(first, zone)};
}

void add(qint64& sum, qint64 characters)
{
    sum += std::min(characters, std::numeric_limits<qint64>::max() - sum);
}

} // namespace

UsageFigures usageFigures(const HistoryRecords& records, Seconds now, const QTimeZone& zone)
{
    const PeriodStarts starts = periodStarts(now, zone);
    UsageFigures figures;
    double audio = 0;
    double processing = 0;
    for (const HistoryRecord& record : records) {
        const HistoryDigest& digest = record.digest();
        add(figures.total, digest.characters);
        audio += std::max(digest.audioSeconds, 0.0);
        processing += std::max(digest.processingSeconds, 0.0);
        if (record.timestamp() >= starts.today)
            add(figures.today, digest.characters);
        if (record.timestamp() >= starts.week)
            add(figures.week, digest.characters);
        if (record.timestamp() >= starts.month)
            add(figures.month, digest.characters);
    }
    const auto total = static_cast<double>(figures.total);
    const double saved = total / typedPerMinute * secondsPerMinute - audio - processing;
    figures.audio = Seconds(std::min(audio, longest));
    figures.saved = Seconds(std::clamp(saved, 0.0, longest));
    if (const double minutes = audio / secondsPerMinute; minutes > 0)
        figures.speed = std::llround(std::min(total / minutes, longest));
    return figures;
}

} // namespace tavrin
