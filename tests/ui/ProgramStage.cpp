#include "ui/ProgramStage.h"

#include "app/pages/SidebarTexts.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryWordBreaker.h"
#include "support/ports/Kept.h"
#include "support/ports/SharedTime.h"
#include "support/sound/InMemorySoundPlayer.h"
#include "ui/DesktopInterface.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::testing {

ProgramStage::ProgramStage()
    : platform(createPorts())
{
    systemInfo->temporaryFolder = folder.path();
    systemInfo->supportFolder = folder.path() + u'/';
    workspace->reducedMotion = true;
    preferences->setValue(keys::interfaceLanguage, u"en"_s);
    preferences->setValue(keys::cloudAccessToken, u"access"_s);
    preferences->setValue(keys::cloudAccountEmail, u"mira.lindqvist@example.com"_s);
    preferences->setValue(keys::tavrinBetaOnboardingSeen, true);
    preferences->setValue(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
    preferences->setValue(keys::translationShortcutIdentifiers,
        QStringList({u"optionSpace"_s, u"controlOptionSpace"_s}));
    preferences->setValue(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
}

ProgramStage::~ProgramStage()
{
    allowDroppedCompletions(true);
    program.reset();
    allowDroppedCompletions(false);
}

Platform ProgramStage::createPorts()
{
    return {
        {
            .keyNames = linuxKeyNames(),
            .texts = linuxTexts(),
            .clock = std::make_unique<SharedClock>(time),
            .mainQueue = std::make_unique<SharedQueue>(time),
            .backgroundQueue = kept(background),
            .preferences = kept(preferences),
            .systemInfo = kept(systemInfo),
            .httpTransport = kept(http, time),
        },
        kept(workspace),
        kept(accessibility),
        kept(pasteboard),
        kept(keyboard),
        std::make_unique<InMemoryKeyMonitor>(),
        kept(probe),
        kept(devices),
        std::make_unique<InMemoryAudioRecorders>(time),
        kept(recognizer),
        std::make_unique<InMemoryLiveSpeechRecognizer>(),
        kept(recogniserSettings),
        std::make_unique<InMemorySoundPlayer>(),
        kept(statusItem),
        kept(alerts),
        kept(permissions),
        std::make_unique<InMemoryWordBreaker>(),
    };
}

void ProgramStage::launch()
{
    program.emplace(AppDelegate::Surroundings{&platform, createDesktopInterface, [] {}});
    program->applicationDidFinishLaunching();
    settle(2s);
}

void ProgramStage::settle(Seconds duration)
{
    background->drain();
    time.advance(duration);
    background->drain();
    QApplication::processEvents();
}

QWidget* ProgramStage::window()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == "Tavrin"_L1 && widget->size() == QSize(820, 640))
            return widget;
    }
    return nullptr;
}

QAbstractButton* ProgramStage::sidebarButton(SettingsPage page)
{
    const auto* const place = std::ranges::find(sidebarButtons, page);
    const LocalizedText& title =
        texts::sidebarTitles.at(static_cast<std::size_t>(place - sidebarButtons.begin()));
    for (QAbstractButton* const button : window()->findChildren<QAbstractButton*>()) {
        for (const QStringView name : {title.en, title.zhHans, title.zhHant}) {
            if (button->accessibleName() == name && button->isCheckable())
                return button;
        }
    }
    return nullptr;
}

void ProgramStage::select(SettingsPage page)
{
    sidebarButton(page)->click();
    settle(500ms);
}

} // namespace tavrin::testing
