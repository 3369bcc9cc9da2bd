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
    std::optional<LocalizedText> accountNotice; ///< Of the account page.
    std::optional<LocalizedText> serviceHint; ///< Where somebody without a service gets one.

    // The health page.
    std::optional<LocalizedText> enablePermission;
    std::optional<LocalizedText> microphoneDenied;
    /// What stands for the permission of speech recognition while there is no recogniser.
    std::optional<LocalizedText> recogniserMissing;
    /// The name of what recognises speech, where the user chooses it. It titles the first part of a
    /// card that a desktop without one does not have.
    std::optional<LocalizedText> recogniser;
    // What helps where Workspace::openSettings() found nothing to open.
    std::optional<LocalizedText> noAccessibilitySettings;
    std::optional<LocalizedText> noMicrophoneSettings;
    std::optional<LocalizedText> noSpeechSettings;
};

} // namespace tavrin
