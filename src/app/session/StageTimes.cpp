#include "app/session/StageTimes.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace tavrin {

void StageTimes::begin(Seconds now)
{
    m_last = now;
    m_stages.clear();
}

void StageTimes::ended(const char* name, Seconds now)
{
    m_stages.push_back({name, now - m_last});
    m_last = now;
}

QString StageTimes::toString() const
{
    QStringList parts;
    for (const Stage& stage : m_stages) {
        const QString milliseconds = QString::number(stage.duration.count() * 1000, 'f', 1);
        parts.append(u"%1 %2 ms"_s.arg(QLatin1StringView(stage.name), milliseconds));
    }
    return parts.join(u", "_s);
}

} // namespace tavrin
