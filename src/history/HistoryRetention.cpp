#include "history/HistoryRetention.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr double secondsPerDay = 86400;

/// The whole number that @p text starts with; 0 for none.
double leadingInteger(const QString& text)
{
    static const QRegularExpression number(u"^\\s*([+-]?\\d{1,9})"_s);
    return number.match(text).captured(1).toDouble();
}

} // namespace

double retentionCutoff(const QString& retention, Seconds now)
{
    if (retention == "none"_L1)
        return now.count() + 1;
    if (retention == "forever"_L1)
        return 0;
    return now.count() - leadingInteger(retention) * secondsPerDay;
}

bool pruneHistory(HistoryRecords& records, double cutoff)
{
    if (cutoff <= 0)
        return false;
    const auto isOld = [cutoff](
                           const HistoryRecord& record) { return record.timestamp() < cutoff; };
    return records.removeIf(isOld) > 0;
}

} // namespace tavrin
