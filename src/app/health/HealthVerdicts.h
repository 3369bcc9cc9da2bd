#pragma once

#include "app/health/HealthContent.h"

namespace tavrin {

class Accessibility;
class AudioDevices;
class Clock;
class FileSpeechRecognizer;
class HotKeyProbe;
class Localization;
class Permissions;
class Preferences;
class Settings;
class SystemInfo;
class Workspace;

/// What tells whether Tavrin can work.
struct HealthSources {
    Accessibility& accessibility;
    AudioDevices& audioDevices;
    const Clock& clock;
    HotKeyProbe& hotKeyProbe;
    const Localization& localization;
    Permissions& permissions;
    const Preferences& preferences;
    const FileSpeechRecognizer& recognizer;
    Settings& settings;
    const SystemInfo& systemInfo;
    Workspace& workspace;
};

/// Looks at everything that Tavrin needs, and says how it stands. Contacts no service: an account
/// counts by its stored tokens. Main thread only; a hung sound server or accessibility bus takes
/// half a second for each question.
class HealthVerdicts {
public:
    /// @param sources must outlive this object.
    explicit HealthVerdicts(const HealthSources& sources);

    /// The page before the first look.
    [[nodiscard]] HealthContent unread() const;

    /// Everything, as it stands now.
    [[nodiscard]] HealthContent read() const;

    /// One row as it stands now.
    [[nodiscard]] HealthRow readRow(HealthItem item) const;

private:
    struct State;

    [[nodiscard]] HealthRow row(HealthItem item) const;
    [[nodiscard]] State stateOf(HealthItem item) const;
    [[nodiscard]] State accessibilityState() const;
    [[nodiscard]] State microphoneState() const;
    [[nodiscard]] State speechState() const;
    [[nodiscard]] State cloudState() const;
    [[nodiscard]] State deliveryState() const;
    [[nodiscard]] QString timeOfDay() const;

    HealthSources m_sources;
};

} // namespace tavrin
