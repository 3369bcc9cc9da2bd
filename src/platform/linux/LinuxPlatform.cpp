#include "platform/Platform.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/linux/atspi/AtspiAccessibility.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/linux/audio/PulseSoundPlayer.h"
#include "platform/linux/desktop/IcuWordBreaker.h"
#include "platform/linux/desktop/LinuxSystemInfo.h"
#include "platform/linux/preferences/JsonPreferences.h"
#include "platform/linux/speech/LinuxPermissions.h"
#include "platform/linux/speech/LinuxRecogniserSettings.h"
#include "platform/linux/speech/LinuxSpeech.h"
#include "platform/linux/speech/PulseSpeechCapture.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/keyboard/X11HotKeyProbe.h"
#include "platform/linux/x11/keyboard/X11KeyMonitor.h"
#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"
#include "platform/qt/BackgroundThread.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtHttpTransport.h"
#include "platform/qt/QtMainQueue.h"
#include "platform/qt/QtStatusItem.h"

namespace tavrin {

namespace {

/// Until the window and the status item are there: what nobody needs before takes its turn then.
constexpr Seconds startPause{0.3};

} // namespace

MachinePorts createMachinePorts()
{
    auto mainQueue = std::make_unique<QtMainQueue>();
    auto backgroundQueue = std::make_unique<BackgroundThread>(*mainQueue);
    auto preferences = std::make_unique<JsonPreferences>(JsonPreferences::userPath(), *mainQueue);
    auto systemInfo = std::make_unique<LinuxSystemInfo>(linuxSpeechLanguage(*preferences));
    return {
        .keyNames = linuxKeyNames(),
        .texts = linuxTexts(),
        .clock = std::make_unique<QtClock>(),
        .mainQueue = std::move(mainQueue),
        .backgroundQueue = std::move(backgroundQueue),
        .preferences = std::move(preferences),
        .systemInfo = std::move(systemInfo),
        .httpTransport = std::make_unique<QtHttpTransport>(),
    };
}

HealthPorts createHealthPorts()
{
    MachinePorts machine = createMachinePorts();
    const auto soundServer = std::make_shared<PulseConnection>();
    auto audioDevices = std::make_unique<PulseAudioDevices>(soundServer);
    auto permissions = std::make_unique<LinuxPermissions>(*audioDevices);
    LinuxSpeech speech = createLinuxSpeech(*machine.preferences, pulseSpeechCapture(soundServer));
    return {
        std::move(machine),
        std::make_unique<X11Workspace>(),
        std::make_unique<AtspiAccessibility>(),
        std::make_unique<X11HotKeyProbe>(),
        std::move(audioDevices),
        std::move(speech.fileRecognizer),
        std::move(permissions),
    };
}

Platform createPlatform(std::unique_ptr<Alerts> drawn)
{
    MachinePorts machine = createMachinePorts();
    auto workspace = std::make_unique<X11Workspace>();
    auto accessibility = std::make_unique<AtspiAccessibility>(startPause);
    auto pasteboard = std::make_unique<ClipboardPasteboard>(startPause);
    auto syntheticKeyboard =
        std::make_unique<X11SyntheticKeyboard>(*pasteboard, *machine.mainQueue, startPause);
    const auto soundServer = std::make_shared<PulseConnection>();
    auto audioDevices = std::make_unique<PulseAudioDevices>(soundServer);
    auto permissions = std::make_unique<LinuxPermissions>(*audioDevices);
    auto recogniserSettings = std::make_unique<LinuxRecogniserSettings>(*machine.preferences);
    LinuxSpeech speech = createLinuxSpeech(*machine.preferences, pulseSpeechCapture(soundServer));
    return {
        std::move(machine),
        std::move(workspace),
        std::move(accessibility),
        std::move(pasteboard),
        std::move(syntheticKeyboard),
        std::make_unique<X11KeyMonitor>(),
        std::make_unique<X11HotKeyProbe>(),
        std::move(audioDevices),
        std::make_unique<PulseAudioRecorders>(soundServer),
        std::move(speech.fileRecognizer),
        std::move(speech.liveRecognizer),
        std::move(recogniserSettings),
        std::make_unique<PulseSoundPlayer>(QStringLiteral(":/Sounds")),
        std::make_unique<QtStatusItem>(),
        std::move(drawn),
        std::move(permissions),
        std::make_unique<IcuWordBreaker>(),
    };
}

} // namespace tavrin
