#pragma once

#include "platform/Accessibility.h"
#include "platform/Alerts.h"
#include "platform/AudioDevices.h"
#include "platform/AudioRecorder.h"
#include "platform/BackgroundQueue.h"
#include "platform/Clock.h"
#include "platform/DesktopTexts.h"
#include "platform/HotKeyProbe.h"
#include "platform/HttpTransport.h"
#include "platform/KeyMonitor.h"
#include "platform/KeyNames.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Permissions.h"
#include "platform/Preferences.h"
#include "platform/SoundPlayer.h"
#include "platform/SpeechRecognizer.h"
#include "platform/StatusItem.h"
#include "platform/SyntheticKeyboard.h"
#include "platform/SystemInfo.h"
#include "platform/WordBreaker.h"
#include "platform/Workspace.h"

#include <memory>

namespace tavrin {

/// Everything the program asks of its desktop. Owned by main, outlives the application. Declared
/// in the order of creation: a port may use those above it, and goes before them.
struct Platform {
    KeyNames keyNames;
    DesktopTexts texts;
    std::unique_ptr<SystemInfo> systemInfo;
    std::unique_ptr<Clock> clock;
    std::unique_ptr<MainQueue> mainQueue;
    std::unique_ptr<BackgroundQueue> backgroundQueue;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<Accessibility> accessibility;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<SyntheticKeyboard> syntheticKeyboard;
    std::unique_ptr<KeyMonitor> keyMonitor;
    std::unique_ptr<HotKeyProbe> hotKeyProbe;
    std::unique_ptr<AudioDevices> audioDevices;
    std::unique_ptr<AudioRecorders> audioRecorders;
    std::unique_ptr<FileSpeechRecognizer> fileSpeechRecognizer;
    std::unique_ptr<LiveSpeechRecognizer> liveSpeechRecognizer;
    std::unique_ptr<HttpTransport> httpTransport;
    std::unique_ptr<SoundPlayer> soundPlayer;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<Permissions> permissions;
    std::unique_ptr<WordBreaker> wordBreaker;
};

/// The ports of the desktop that this build is for; every one is there. Called once, on the main
/// thread, when the QApplication exists.
[[nodiscard]] Platform createPlatform();

/// Only the ports that need no desktop and disturb no program that runs already: systemInfo, clock,
/// mainQueue, backgroundQueue, preferences, httpTransport. Called once, instead of
/// createPlatform(), when a QCoreApplication exists.
[[nodiscard]] Platform createPlatformWithoutDesktop();

} // namespace tavrin
