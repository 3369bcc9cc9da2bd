#pragma once

#include <QString>

namespace tavrin {

/// What changes on the overview page. The figures are empty until the history is read.
struct OverviewContent {
    QString todayUsageLabel; ///< Numbers without their units.
    QString weekUsageLabel;
    QString monthUsageLabel;
    QString totalDictationTimeLabel; ///< A duration, with its units.
    QString totalDictatedCharactersLabel;
    QString timeSavedLabel; ///< A duration, with its units.
    QString averageDictationSpeedLabel;
    QString instructionLabel; ///< The first shortcut of each operation.

    friend bool operator==(const OverviewContent&, const OverviewContent&) = default;
};

} // namespace tavrin
