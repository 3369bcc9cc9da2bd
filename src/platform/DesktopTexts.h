#pragma once

#include "base/LocalizedText.h"

#include <optional>

namespace tavrin {

/// What this desktop says where the text of a feature would be untrue on it. The texts beside the
/// features are those of macOS; an empty one here leaves them as they are.
struct DesktopTexts {
    std::optional<LocalizedText> betaNotice; ///< The welcome of the first run.
    std::optional<LocalizedText> installationSteps; ///< Its guide.
    std::optional<LocalizedText> noShortcutConflict;
    std::optional<LocalizedText> modelApiNotice;
    std::optional<LocalizedText> speechNotAllowed;
    std::optional<LocalizedText> speechUnavailable;
    /// Said only where Workspace::reachesEveryProgram() is false.
    std::optional<LocalizedText> limitedReach;
};

} // namespace tavrin
