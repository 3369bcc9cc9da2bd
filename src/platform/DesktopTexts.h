#pragma once

#include "base/LocalizedText.h"

#include <optional>

namespace tavrin {

/// What this desktop says where the text of a feature would be untrue on it. The texts beside the
/// features are those of macOS; an empty one here leaves them as they are.
struct DesktopTexts {
    std::optional<LocalizedText> betaNotice; ///< The welcome of the first run.
    std::optional<LocalizedText> installationGuide; ///< Its guide: the title, and what it says.
    std::optional<LocalizedText> installationSteps;
    std::optional<LocalizedText> noShortcutConflict;
    std::optional<LocalizedText> modelApiNotice;
    /// Why no recording starts, where nobody knows a better reason.
    std::optional<LocalizedText> checkMicrophonePermission;
    std::optional<LocalizedText> speechNotAllowed;
    std::optional<LocalizedText> speechUnavailable;
    /// What the history page says of where it is kept.
    std::optional<LocalizedText> historySubtitle;
    std::optional<LocalizedText> retentionExplanation;
    std::optional<LocalizedText> historyStorage;
    /// Said only where Workspace::reachesEveryProgram() is false.
    std::optional<LocalizedText> limitedReach;
};

} // namespace tavrin
