#include "app/ControllerFixture.h"

#include "support/InMemoryAccessibility.h"
#include "support/InMemoryPasteboard.h"
#include "support/InMemoryPermissions.h"
#include "support/InMemorySpeechRecognizers.h"
#include "support/RecordingKeyboard.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::testing {
namespace {

/// The virtual time as the clock that a platform owns.
class SharedClock final : public Clock {
public:
    explicit SharedClock(VirtualTime& time)
        : m_time(time)
    {
    }

    [[nodiscard]] Seconds sinceEpoch() const override { return m_time.sinceEpoch(); }

    [[nodiscard]] Seconds uptime() const override { return m_time.uptime(); }

private:
    VirtualTime& m_time;
};

/// The virtual time as the main queue that a platform owns.
class SharedQueue final : public MainQueue {
public:
    explicit SharedQueue(VirtualTime& time)
        : m_time(time)
    {
    }

    void post(Task task) override { m_time.post(std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Task task) override
    {
        return m_time.after(delay, std::move(task));
    }

    void callLater(Seconds delay, Task task) override { m_time.callLater(delay, std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Task task) override
    {
        return m_time.every(interval, std::move(task));
    }

private:
    VirtualTime& m_time;
};

} // namespace

ControllerFixture::ControllerFixture()
{
    preferences.setValue(keys::interfaceLanguage, u"en"_s);
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
    preferences.setValue(keys::translationShortcutIdentifiers, QStringList{u"optionSpace"_s});
    preferences.setValue(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    preferences.setValue(keys::cloudAccessToken, u"access"_s);
    preferences.setValue(keys::tavrinBetaOnboardingSeen, true);

    const auto own = [](auto& port, auto made) {
        auto* const raw = made.get();
        port = std::move(made);
        return raw;
    };
    systemInfo = own(platform.systemInfo, std::make_unique<InMemorySystemInfo>());
    systemInfo->temporaryFolder = folder.path();
    systemInfo->supportFolder = folder.path();
    platform.clock = std::make_unique<SharedClock>(time);
    platform.mainQueue = std::make_unique<SharedQueue>(time);
    platform.preferences = std::make_unique<TracedPreferences>(preferences, note);
    platform.workspace = std::make_unique<TracedWorkspace>(workspace, note);
    platform.accessibility = std::make_unique<InMemoryAccessibility>();
    platform.pasteboard = std::make_unique<InMemoryPasteboard>();
    platform.syntheticKeyboard = std::make_unique<RecordingKeyboard>();
    keyboard = own(platform.keyMonitor, std::make_unique<InMemoryKeyMonitor>());
    probe = own(platform.hotKeyProbe, std::make_unique<InMemoryHotKeyProbe>());
    devices = own(platform.audioDevices, std::make_unique<InMemoryAudioDevices>());
    devices->addMicrophone(builtInMicrophone, u"Built-in"_s, u"built-in"_s);
    devices->addMicrophone(headset, u"Headset"_s, u"headset"_s);
    devices->defaultInput = builtInMicrophone;
    platform.audioRecorders = std::make_unique<InMemoryAudioRecorders>(time);
    recognizer =
        own(platform.fileSpeechRecognizer, std::make_unique<InMemoryFileSpeechRecognizer>());
    platform.liveSpeechRecognizer = std::make_unique<InMemoryLiveSpeechRecognizer>();
    platform.httpTransport = std::make_unique<TracedHttpTransport>(http, note);
    platform.soundPlayer = std::make_unique<TracedSoundPlayer>(note);
    statusItem = own(platform.statusItem, std::make_unique<InMemoryStatusItem>());
    statusItem->onVisible = [this] { note(u"show status item"_s); };
    alerts = own(platform.alerts, std::make_unique<ScriptedAlerts>());
    platform.permissions = std::make_unique<InMemoryPermissions>();
    background = own(platform.backgroundQueue, std::make_unique<InMemoryBackgroundQueue>());

    surroundings = {
        .platform = &platform,
        .createUserInterface =
            [this](const UserInterfaceNeighbours&) {
                note(u"create interface"_s);
                auto made = std::make_unique<TracedInterface>(note);
                windows = made.get();
                windows->hasIcon = hasIcon;
                return made;
            },
        .terminate = [this] { note(u"terminate"_s); },
        .correctionLearning = &correctionLearning,
    };
}

void ControllerFixture::TearDown()
{
    allowDroppedCompletions(true);
    delegate.reset();
}

void ControllerFixture::launch()
{
    delegate.emplace(surroundings);
    delegate->applicationDidFinishLaunching();
}

} // namespace tavrin::testing
