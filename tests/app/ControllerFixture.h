#pragma once

#include "app/AppDelegate.h"
#include "app/TracedInterface.h"
#include "platform/Platform.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryStatusItem.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "support/sound/InMemoryAudioRecorders.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// The whole program on a small desktop, with windows that only note what they are told.
///
/// `trace` holds what reached the ports and the windows, in order. The user has chosen English and
/// shortcuts, is signed in, and has seen the first-run notice.
class ControllerFixture : public ::testing::Test {
protected:
    static constexpr AudioDeviceId builtInMicrophone = 1;
    static constexpr AudioDeviceId headset = 2;

    ControllerFixture();
    void TearDown() override;

    /// Starts the program; what the first run through the main queue brings is done afterwards.
    void launch();

    [[nodiscard]] Platform createPorts();

    QStringList takeTrace() { return std::exchange(trace, {}); }

    /// Ends with the fixture's last member: completions that the program leaves unanswered at its
    /// end are dropped with the ports, but those of the next test count again.
    struct Termination {
        Termination() = default;

        ~Termination() { allowDroppedCompletions(false); }

        Termination(const Termination&) = delete;
        Termination& operator=(const Termination&) = delete;
    };

    const Termination termination;
    QStringList trace;
    Note onNote; ///< Told of each line when it is noted.
    const Note note = [this](const QString& line) {
        trace.append(line);
        if (onNote)
            onNote(line);
    };

    // The desktop.
    QTemporaryDir folder;
    VirtualTime time;
    InMemoryPreferences* preferences = nullptr; ///< Owned by the platform, like the others.
    InMemoryWorkspace* workspace = nullptr;
    InMemorySystemInfo* systemInfo = nullptr;
    InMemoryHttpTransport* http = nullptr;
    InMemoryStatusItem* statusItem = nullptr;
    InMemoryAudioDevices* devices = nullptr;
    InMemoryKeyMonitor* keyboard = nullptr;
    InMemoryHotKeyProbe* probe = nullptr;
    ScriptedAlerts* alerts = nullptr;
    InMemoryFileSpeechRecognizer* recognizer = nullptr;
    InMemoryBackgroundQueue* background = nullptr;
    Platform platform = createPorts();

    // The neighbours.
    TracedInterface* windows = nullptr; ///< Owned by the controller.
    bool hasIcon = true;
    AppDelegate::Surroundings surroundings;
    std::optional<AppDelegate> delegate;
};

} // namespace tavrin::testing
