#include "app/ControllerFixture.h"

#include "support/InMemoryAccessibility.h"
#include "support/InMemoryPasteboard.h"
#include "support/InMemoryPermissions.h"
#include "support/InMemoryRecogniserSettings.h"
#include "support/InMemorySoundPlayer.h"
#include "support/InMemorySpeechRecognizers.h"
#include "support/InMemoryWordBreaker.h"
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

    systemInfo->temporaryFolder = folder.path();
    systemInfo->supportFolder = folder.path();
    devices->addMicrophone(builtInMicrophone, u"Built-in"_s, u"built-in"_s);
    devices->addMicrophone(headset, u"Headset"_s, u"headset"_s);
    devices->defaultInput = builtInMicrophone;
    statusItem->onVisible = [this] { note(u"show status item"_s); };

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
    };
}

Platform ControllerFixture::createPorts()
{
    const auto kept = [](auto*& raw) {
        auto made = std::make_unique<std::remove_reference_t<decltype(*raw)>>();
        raw = made.get();
        return made;
    };
    return {
        {
            .keyNames = {},
            .texts = {},
            .clock = std::make_unique<SharedClock>(time),
            .mainQueue = std::make_unique<SharedQueue>(time),
            .backgroundQueue = kept(background),
            .preferences = std::make_unique<TracedPreferences>(preferences, note),
            .systemInfo = kept(systemInfo),
            .httpTransport = std::make_unique<TracedHttpTransport>(http, note),
        },
        std::make_unique<TracedWorkspace>(workspace, note),
        std::make_unique<InMemoryAccessibility>(),
        std::make_unique<InMemoryPasteboard>(),
        std::make_unique<RecordingKeyboard>(),
        kept(keyboard),
        kept(probe),
        kept(devices),
        std::make_unique<InMemoryAudioRecorders>(time),
        kept(recognizer),
        std::make_unique<InMemoryLiveSpeechRecognizer>(),
        std::make_unique<InMemoryRecogniserSettings>(),
        std::make_unique<InMemorySoundPlayer>(note),
        kept(statusItem),
        kept(alerts),
        std::make_unique<InMemoryPermissions>(),
        std::make_unique<InMemoryWordBreaker>(),
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
