#include "app/ControllerFixture.h"

#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/InMemoryRecogniserSettings.h"
#include "support/ports/InMemoryWordBreaker.h"
#include "support/ports/Kept.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/ports/SharedTime.h"
#include "support/sound/InMemorySoundPlayer.h"
#include "support/sound/InMemorySpeechRecognizers.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::testing {
ControllerFixture::ControllerFixture()
{
    preferences->arrange(keys::interfaceLanguage, u"en"_s);
    preferences->arrange(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
    preferences->arrange(keys::translationShortcutIdentifiers, QStringList{u"optionSpace"_s});
    preferences->arrange(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    preferences->arrange(keys::cloudAccessToken, u"access"_s);
    preferences->arrange(keys::tavrinBetaOnboardingSeen, true);

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
    return {
        {
            .keyNames = {},
            .texts = {},
            .clock = std::make_unique<SharedClock>(time),
            .mainQueue = std::make_unique<SharedQueue>(time),
            .backgroundQueue = kept(background),
            .preferences = kept(preferences, note),
            .systemInfo = kept(systemInfo),
            .httpTransport = kept(http, time, note),
        },
        kept(workspace, note),
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
