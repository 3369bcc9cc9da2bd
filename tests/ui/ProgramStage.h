#pragma once

#include "app/AppDelegate.h"
#include "app/windows/SettingsPage.h"
#include "platform/Platform.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryRecogniserSettings.h"
#include "support/ports/InMemoryStatusItem.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "support/sound/InMemoryAudioRecorders.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <QAbstractButton>
#include <QTemporaryDir>
#include <QWidget>

#include <optional>

namespace tavrin::testing {

/// The whole program with its real windows on a desktop of in-memory ports. Its texts are those of
/// Linux; the user is signed in, has seen the first-run notice, and reads English.
class ProgramStage {
public:
    ProgramStage();
    ~ProgramStage();

    ProgramStage(const ProgramStage&) = delete;
    ProgramStage& operator=(const ProgramStage&) = delete;

    /// Starts the program; its window is shown.
    void launch();

    /// Lets @p duration pass, and everything be done that is to be done by then.
    void settle(Seconds duration);

    /// The main window. Null before the launch.
    [[nodiscard]] static QWidget* window();

    /// Of the sidebar.
    [[nodiscard]] static QAbstractButton* sidebarButton(SettingsPage page);

    /// Presses the sidebar's button, and lets the page come to rest.
    void select(SettingsPage page);

    /// The children of the window of this class.
    template <typename Widget>
    [[nodiscard]] QList<Widget*> children() const
    {
        QList<Widget*> result;
        for (QWidget* const widget : window()->findChildren<QWidget*>()) {
            if (auto* const found = dynamic_cast<Widget*>(widget))
                result.append(found);
        }
        return result;
    }

    /// The visible one with this object name; null when there is none. Any name when it is empty.
    template <typename Widget>
    [[nodiscard]] Widget* visibleChild(const QString& name = {}) const
    {
        for (Widget* const widget : children<Widget>()) {
            if (widget->isVisible() && (name.isEmpty() || widget->objectName() == name))
                return widget;
        }
        return nullptr;
    }

    VirtualTime time;
    QTemporaryDir folder;

    // Owned by the platform.
    InMemoryPreferences* preferences = nullptr;
    InMemoryWorkspace* workspace = nullptr;
    InMemorySystemInfo* systemInfo = nullptr;
    InMemoryAudioDevices* devices = nullptr;
    InMemoryHotKeyProbe* probe = nullptr;
    InMemoryHttpTransport* http = nullptr;
    InMemoryAccessibility* accessibility = nullptr;
    InMemoryPasteboard* pasteboard = nullptr;
    InMemoryPermissions* permissions = nullptr;
    InMemoryRecogniserSettings* recogniserSettings = nullptr;
    InMemoryBackgroundQueue* background = nullptr;
    InMemoryStatusItem* statusItem = nullptr;
    RecordingKeyboard* keyboard = nullptr;
    InMemoryFileSpeechRecognizer* recognizer = nullptr;
    ScriptedAlerts* alerts = nullptr;
    Platform platform;

    std::optional<AppDelegate> program;

private:
    [[nodiscard]] Platform createPorts();
};

} // namespace tavrin::testing
