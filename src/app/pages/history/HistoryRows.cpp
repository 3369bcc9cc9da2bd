#include "app/pages/history/HistoryRows.h"

#include "app/pages/history/HistoryTexts.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Seconds since 1970 between which dates are shown: those of the years 1 to 9999.
constexpr double earliest = -62'135'596'800.0;
constexpr double latest = 253'402'300'799.0;

QDateTime localTime(double timestamp, const QTimeZone& zone)
{
    const double shown = std::clamp(timestamp, earliest, latest);
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(shown * 1000), zone);
}

/// The labels of days. Asks the calendar once for each run of records of the same day.
class DayLabels {
public:
    DayLabels(Seconds now, const QTimeZone& zone, const HistoryRowWords& words)
        : m_zone(zone)
        , m_today(localTime(now.count(), m_zone).date())
        , m_words(words)
    {
    }

    [[nodiscard]] const QString& labelOf(double timestamp)
    {
        if (timestamp < m_begin || timestamp >= m_end)
            moveTo(localTime(timestamp, m_zone).date());
        return m_label;
    }

private:
    void moveTo(QDate day)
    {
        m_begin = static_cast<double>(day.startOfDay(m_zone).toMSecsSinceEpoch()) / 1000;
        m_end = static_cast<double>(day.addDays(1).startOfDay(m_zone).toMSecsSinceEpoch()) / 1000;
        if (day == m_today)
            m_label = m_words.today;
        else if (day == m_today.addDays(-1))
            m_label = m_words.yesterday;
        else
            m_label = day.toString(texts::monthAndDay);
    }

    QTimeZone m_zone;
    QDate m_today;
    const HistoryRowWords& m_words;
    double m_begin = 0; // Seconds since 1970; the same as the end while there is no day yet.
    double m_end = 0;
    QString m_label;
};

QString modeLabel(const QJsonObject& object, const HistoryRowWords& words)
{
    const QString mode = object.value("mode"_L1).toString();
    if (mode == "translation"_L1) {
        const QString target = object.value("targetLanguage"_L1).toString(u"english"_s);
        return texts::translationInto.toString().arg(words.translation, words.targetName(target));
    }
    return mode == "chat"_L1 || mode == "ask"_L1 ? words.chat : words.dictation;
}

} // namespace

struct HistoryRows::Data {
    Source source;
    QList<Day> days;
};

HistoryRows::HistoryRows()
    : m_data(std::make_shared<const Data>())
{
}

HistoryRows::HistoryRows(Source source)
{
    const auto data = std::make_shared<Data>();
    data->source = std::move(source);
    m_data = data;
    DayLabels labels(data->source.now, data->source.timeZone, data->source.words);
    for (qsizetype i = 0; i < size(); ++i) {
        const QString& label = labels.labelOf(record(i).timestamp());
        if (data->days.isEmpty() || data->days.last().label != label)
            data->days.append({i, label});
    }
}

qsizetype HistoryRows::size() const
{
    const Source& source = m_data->source;
    return source.listed ? source.listed->size() : source.records.size();
}

const QList<HistoryRows::Day>& HistoryRows::days() const
{
    return m_data->days;
}

HistoryRow HistoryRows::row(qsizetype index) const
{
    const Source& source = m_data->source;
    const HistoryRecord& shown = record(index);
    HistoryRow row;
    row.id = shown.id();
    row.time = localTime(shown.timestamp(), source.timeZone).toString(u"HH:mm");
    row.mode = modeLabel(shown.object(), source.words);
    row.header = texts::recordHeader.toString().arg(row.time, row.mode);
    row.showsOriginal = source.expanded.contains(row.id);
    row.caption = row.showsOriginal ? source.words.originalTranscript : source.words.editedResult;
    row.text = row.showsOriginal ? shown.transcript() : shown.finalText();
    return row;
}

QString HistoryRows::idOf(qsizetype index) const
{
    return record(index).id();
}

std::optional<qsizetype> HistoryRows::indexOf(const QString& id) const
{
    for (qsizetype i = 0; i < size(); ++i) {
        if (record(i).id() == id)
            return i;
    }
    return std::nullopt;
}

QByteArrayView HistoryRows::writtenText(qsizetype index) const
{
    const HistoryRecord& shown = record(index);
    const QSet<QString>& expanded = m_data->source.expanded;
    return !expanded.isEmpty() && expanded.contains(shown.id()) ? shown.writtenTranscript()
                                                                : shown.writtenFinalText();
}

const HistoryRecord& HistoryRows::record(qsizetype index) const
{
    const Source& source = m_data->source;
    return source.records.at(source.listed ? source.listed->at(index) : index);
}

} // namespace tavrin
