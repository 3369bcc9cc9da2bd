#pragma once

#include <QString>

namespace tavrin {

struct HealthContent;

/// The verdicts as text, one to a line, each with its title before it.
[[nodiscard]] QString healthReport(const HealthContent& content);

/// Whether nothing in it is a problem.
[[nodiscard]] bool isAllWell(const HealthContent& content);

} // namespace tavrin
