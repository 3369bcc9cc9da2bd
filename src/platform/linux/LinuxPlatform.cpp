#include "platform/Platform.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/linux/atspi/AtspiAccessibility.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/linux/desktop/IcuWordBreaker.h"
#include "platform/linux/desktop/JsonPreferences.h"
#include "platform/linux/desktop/LinuxSystemInfo.h"
#include "platform/linux/desktop/PulseSoundPlayer.h"
#include "platform/linux/speech/LinuxPermissions.h"
#include "platform/linux/speech/LinuxSpeech.h"
#include "platform/linux/speech/PulseSpeechCapture.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/X11HotKeyProbe.h"
#include "platform/linux/x11/X11KeyMonitor.h"
#include "platform/linux/x11/X11SyntheticKeyboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtBackgroundQueue.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtHttpTransport.h"
#include "platform/qt/QtMainQueue.h"
#include "platform/qt/QtStatusItem.h"

namespace tavrin {

namespace {

constexpr Seconds accessibilityPause{0.3}; // Until the window and the status item are there.

} // namespace

Platform createPlatformWithoutDesktop()
{
    Platform platform;
    platform.keyNames = linuxKeyNames();
    platform.texts = linuxTexts();
    platform.clock = std::make_unique<QtClock>();
    platform.mainQueue = std::make_unique<QtMainQueue>();
    platform.backgroundQueue = std::make_unique<QtBackgroundQueue>(*platform.mainQueue);
    platform.preferences =
        std::make_unique<JsonPreferences>(JsonPreferences::userPath(), *platform.mainQueue);
    platform.systemInfo =
        std::make_unique<LinuxSystemInfo>(linuxSpeechLanguage(*platform.preferences));
    platform.httpTransport = std::make_unique<QtHttpTransport>();
    return platform;
}

Platform createPlatform()
{
    Platform platform = createPlatformWithoutDesktop();
    platform.workspace = std::make_unique<X11Workspace>();
    platform.accessibility = std::make_unique<AtspiAccessibility>(accessibilityPause);
    auto pasteboard = std::make_unique<ClipboardPasteboard>();
    platform.syntheticKeyboard =
        std::make_unique<X11SyntheticKeyboard>(*pasteboard, *platform.mainQueue);
    platform.pasteboard = std::move(pasteboard);
    platform.keyMonitor = std::make_unique<X11KeyMonitor>();
    platform.hotKeyProbe = std::make_unique<X11HotKeyProbe>();
    const auto soundServer = std::make_shared<PulseConnection>();
    platform.audioDevices = std::make_unique<PulseAudioDevices>(soundServer);
    platform.audioRecorders = std::make_unique<PulseAudioRecorders>(soundServer);
    LinuxSpeech speech = createLinuxSpeech(*platform.preferences, pulseSpeechCapture(soundServer));
    platform.fileSpeechRecognizer = std::move(speech.fileRecognizer);
    platform.liveSpeechRecognizer = std::move(speech.liveRecognizer);
    platform.soundPlayer = std::make_unique<PulseSoundPlayer>(QStringLiteral(":/Sounds"));
    platform.statusItem = std::make_unique<QtStatusItem>();
    platform.alerts = std::make_unique<QtAlerts>();
    platform.permissions = std::make_unique<LinuxPermissions>(*platform.audioDevices);
    platform.wordBreaker = std::make_unique<IcuWordBreaker>();
    return platform;
}

} // namespace tavrin
