#include "app/health/HealthReport.h"

#include "app/health/HealthContent.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {

QString healthReport(const HealthContent& content)
{
    QString report;
    for (const HealthRow& row : content.rows)
        report += row.title + u": "_s + row.status + u'\n';
    for (const HealthNote& note : content.notes)
        report += note.title + u": "_s + note.text + u'\n';
    return report;
}

bool isAllWell(const HealthContent& content)
{
    const auto isProblem = [](const auto& verdict) {
        return verdict.color == HealthColor::Problem;
    };
    return std::ranges::none_of(content.rows, isProblem)
        && std::ranges::none_of(content.notes, isProblem);
}

} // namespace tavrin
