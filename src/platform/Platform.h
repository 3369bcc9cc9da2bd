#pragma once

#include "base/Owned.h"
#include "platform/Alerts.h"
#include "platform/BackgroundQueue.h"
#include "platform/Clock.h"
#include "platform/DesktopTexts.h"
#include "platform/HttpTransport.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Permissions.h"
#include "platform/StatusItem.h"
#include "platform/SystemInfo.h"
#include "platform/WordBreaker.h"
#include "platform/audio/AudioDevices.h"
#include "platform/audio/AudioRecorder.h"
#include "platform/audio/SoundPlayer.h"
#include "platform/keyboard/HotKeyProbe.h"
#include "platform/keyboard/KeyMonitor.h"
#include "platform/keyboard/KeyNames.h"
#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/preferences/Preferences.h"
#include "platform/programs/Accessibility.h"
#include "platform/programs/Workspace.h"
#include "platform/speech/RecogniserSettings.h"
#include "platform/speech/SpeechRecognizer.h"

namespace tavrin {

/// What the program asks of any machine, with a desktop or without one. Declared in the order of
/// creation: a port may use those above it, and goes before them.
struct MachinePorts {
    KeyNames keyNames;
    DesktopTexts texts;
    Owned<Clock> clock;
    Owned<MainQueue> mainQueue;
    Owned<BackgroundQueue> backgroundQueue;
    Owned<Preferences> preferences;
    Owned<SystemInfo> systemInfo;
    Owned<HttpTransport> httpTransport;
};

/// Everything the program asks of its desktop; one without a port does not compile. Owned by main,
/// outlives the application. The order is that of creation here too.
struct Platform : MachinePorts {
    Owned<Workspace> workspace;
    Owned<Accessibility> accessibility;
    Owned<Pasteboard> pasteboard;
    Owned<SyntheticKeyboard> syntheticKeyboard;
    Owned<KeyMonitor> keyMonitor;
    Owned<HotKeyProbe> hotKeyProbe;
    Owned<AudioDevices> audioDevices;
    Owned<AudioRecorders> audioRecorders;
    Owned<FileSpeechRecognizer> fileSpeechRecognizer;
    Owned<LiveSpeechRecognizer> liveSpeechRecognizer;
    Owned<RecogniserSettings> recogniserSettings;
    Owned<SoundPlayer> soundPlayer;
    Owned<StatusItem> statusItem;
    Owned<Alerts> alerts;
    Owned<Permissions> permissions;
    Owned<WordBreaker> wordBreaker;
};

/// What tells whether the program can work, without a window and beside a program that runs.
struct HealthPorts : MachinePorts {
    Owned<Workspace> workspace;
    Owned<Accessibility> accessibility;
    Owned<HotKeyProbe> hotKeyProbe;
    Owned<AudioDevices> audioDevices;
    Owned<FileSpeechRecognizer> fileSpeechRecognizer;
    Owned<Permissions> permissions;
};

/// The ports of the desktop that this build is for. Called once, on the main thread, when the
/// QApplication exists.
/// @param drawn the program's own alerts, for a desktop that has none.
[[nodiscard]] Platform createPlatform(std::unique_ptr<Alerts> drawn);

/// Those that need no desktop and disturb no program that runs already. Called once, instead of
/// createPlatform(), when a QCoreApplication exists.
[[nodiscard]] MachinePorts createMachinePorts();

/// Those, and what a look at the desktop needs. Under the same conditions.
[[nodiscard]] HealthPorts createHealthPorts();

} // namespace tavrin
