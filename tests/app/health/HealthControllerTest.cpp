#include "app/health/HealthController.h"

#include "app/FakePanels.h"
#include "app/health/HealthFixture.h"
#include "platform/linux/LinuxTexts.h"
#include "support/ports/ScriptedAlerts.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class HealthControllerTest : public testing::HealthFixture {
protected:
    testing::ScriptedAlerts alerts;
    QStringList trace;
    testing::FakeView<HealthContent> view;

    void TearDown() override
    {
        m_controller.reset();
        EXPECT_EQ(time.pending(), 0U);
    }

    HealthController& controller()
    {
        if (!m_controller) {
            m_controller.emplace(HealthController::Neighbours{
                .sources = sources(),
                .alerts = alerts,
                .mainQueue = time,
                .configureActiveService = [this] { trace.append(u"sign in"_s); },
                .showHistoryWindow = [this] { trace.append(u"history"_s); },
                .showShortcuts = [this] { trace.append(u"shortcuts"_s); },
            });
            m_controller->setView(&view);
        }
        return *m_controller;
    }

    void forgetController() { m_controller.reset(); }

    [[nodiscard]] const HealthRow& shown(HealthItem item) const { return view.shown->row(item); }

    [[nodiscard]] QStringList noteTitles() const
    {
        QStringList titles;
        for (const HealthNote& note : view.shown->notes)
            titles.append(note.title);
        return titles;
    }

private:
    std::optional<HealthController> m_controller;
};

TEST_F(HealthControllerTest, APageIsShownAtOnceThatItIsBeingChecked)
{
    controller();
    EXPECT_EQ(shown(HealthItem::Microphone).status, u"检测中…"_s);
}

TEST_F(HealthControllerTest, ARefreshLooksAtEverything)
{
    controller().refreshHealthStatus();
    EXPECT_EQ(shown(HealthItem::Api).color, HealthColor::Problem);

    preferences.setValue(keys::cloudRefreshToken, u"refresh"_s);
    permissions.microphone = AuthorizationStatus::Denied;
    controller().refreshHealthStatus();
    EXPECT_EQ(shown(HealthItem::Api).color, HealthColor::SignedIn);
    EXPECT_EQ(shown(HealthItem::Microphone).color, HealthColor::Problem);
}

TEST_F(HealthControllerTest, WithoutAPageARefreshAsksNobody)
{
    texts = linuxTexts();
    controller().setView(nullptr);
    controller().refreshHealthStatus();
    controller().updateAccessibilityStatus();

    EXPECT_TRUE(probe.probed.isEmpty());
    EXPECT_EQ(controller().content().updated, "");
}

TEST_F(HealthControllerTest, TheRowOfAccessibilityIsLookedAtAlone)
{
    controller().refreshHealthStatus();
    const QString before = view.shown->updated;
    accessibility.trusted = false;
    permissions.microphone = AuthorizationStatus::Denied;
    time.advance(5s);
    controller().updateAccessibilityStatus();

    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Problem);
    EXPECT_EQ(shown(HealthItem::Microphone).color, HealthColor::Healthy);
    EXPECT_EQ(view.shown->updated, before);
}

// While it is looked at.

TEST_F(HealthControllerTest, ThePageIsRefreshedWhenItComesIntoSightAndEveryThreeSeconds)
{
    controller().pageShown();
    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Healthy);

    accessibility.trusted = false;
    time.advance(2999ms);
    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Healthy);
    time.advance(1ms);
    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Problem);
    accessibility.trusted = true;
    time.advance(3s);
    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Healthy);
    controller().pageHidden();
}

TEST_F(HealthControllerTest, OutOfSightItRests)
{
    controller().pageShown();
    controller().pageHidden();
    EXPECT_EQ(time.pending(), 0U);

    controller().pageShown();
    controller().setView(nullptr); // The page is gone.
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(HealthControllerTest, AtItsEndNothingWaits)
{
    controller().pageShown();
    forgetController();
    EXPECT_EQ(time.pending(), 0U);
}

// Accessibility.

TEST_F(HealthControllerTest, AccessibilityIsAskedForAndItsRowRefreshed)
{
    accessibility.trusted = false;
    controller().refreshHealthStatus();
    accessibility.trustIsGranted = true;
    controller().press(HealthItem::Accessibility);

    EXPECT_TRUE(accessibility.calls.contains(u"requestTrust"_s));
    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Healthy);
    EXPECT_FALSE(shown(HealthItem::Accessibility).hasButton);
    EXPECT_TRUE(workspace.openedSettings.isEmpty());
}

TEST_F(HealthControllerTest, WhileItIsNotGrantedTheSettingsAreOpened)
{
    accessibility.trusted = false;
    controller().requestAccessibilityPermission();

    EXPECT_EQ(shown(HealthItem::Accessibility).color, HealthColor::Problem);
    EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::Accessibility});
    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(HealthControllerTest, AskedForWhatIsThereNothingOpens)
{
    controller().requestAccessibilityPermission();
    EXPECT_TRUE(workspace.openedSettings.isEmpty());
}

TEST_F(HealthControllerTest, ProgramsThatStartedBeforeAreToBeRestartedUntilTheyAre)
{
    texts = linuxTexts();
    workspace.running = {{10, u"Files"_s, u"files"_s, 0}, {11, u"Firefox"_s, u"firefox"_s, 0},
        {12, u"Firefox"_s, u"firefox"_s, 0}, {13, u"Kate"_s, u"kate"_s, 0}};
    accessibility.trusted = false;
    accessibility.trustIsGranted = true;
    accessibility.exposed = {13};
    controller().refreshHealthStatus();
    EXPECT_EQ(noteTitles(), QStringList{"Recogniser"});
    controller().press(HealthItem::Accessibility);

    EXPECT_EQ(noteTitles(), (QStringList{"Recogniser", "Accessibility"}));
    EXPECT_EQ(view.shown->notes[1].text,
        u"⚠ Restart these programs, so that Tavrin can write into them: Files, Firefox"_s);

    accessibility.exposed.insert(10); // It has joined without a restart.
    controller().refreshHealthStatus();
    EXPECT_TRUE(view.shown->notes[1].text.endsWith(u": Firefox"_s));

    workspace.running = {{13, u"Kate"_s, u"kate"_s, 0}, {20, u"Firefox"_s, u"firefox"_s, 0}};
    controller().refreshHealthStatus();
    EXPECT_EQ(noteTitles(), QStringList{"Recogniser"});
}

TEST_F(HealthControllerTest, NobodyHasToRestartWhatRanWithAccessibilityOn)
{
    texts = linuxTexts();
    workspace.running = {{10, u"Terminal"_s, u"terminal"_s, 0}};
    controller().requestAccessibilityPermission();
    controller().refreshHealthStatus();

    EXPECT_EQ(noteTitles(), QStringList{"Recogniser"});
}

TEST_F(HealthControllerTest, WhereItIsNotKnownWhoTakesPartNobodyIsAccused)
{
    texts = linuxTexts();
    workspace.running = {{10, u"Files"_s, u"files"_s, 0}};
    accessibility.trusted = false;
    accessibility.trustIsGranted = true;
    controller().requestAccessibilityPermission();
    accessibility.trusted = false; // The bus has died meanwhile.
    controller().refreshHealthStatus();

    EXPECT_EQ(noteTitles(), QStringList{"Recogniser"});
}

// Microphone and speech.

TEST_F(HealthControllerTest, AnAuthorisedMicrophoneIsOnlyLookedAtAgain)
{
    controller().press(HealthItem::Microphone);
    EXPECT_EQ(shown(HealthItem::Microphone).color, HealthColor::Healthy);
    EXPECT_EQ(permissions.microphoneRequests, 0);
    EXPECT_TRUE(workspace.openedSettings.isEmpty());
}

TEST_F(HealthControllerTest, AMicrophoneThatWasNotAskedForIsAskedForAndThePageRefreshed)
{
    permissions.microphone = AuthorizationStatus::NotDetermined;
    permissions.holdsRequests = true;
    controller().requestMicrophonePermission();
    EXPECT_EQ(permissions.microphoneRequests, 1);
    EXPECT_EQ(shown(HealthItem::Microphone).status, u"检测中…"_s);

    permissions.microphone = AuthorizationStatus::Authorized;
    permissions.takeRequest()(AuthorizationStatus::Authorized);
    EXPECT_EQ(shown(HealthItem::Microphone).status, u"检测中…"_s); // Not on the system's thread.
    time.advance(0s);
    EXPECT_EQ(shown(HealthItem::Microphone).color, HealthColor::Healthy);
    EXPECT_TRUE(workspace.openedSettings.isEmpty());
}

TEST_F(HealthControllerTest, ADeniedMicrophoneOpensTheSettingsInsteadOfAskingAgain)
{
    for (const auto status : {AuthorizationStatus::Denied, AuthorizationStatus::Restricted}) {
        workspace.openedSettings.clear();
        permissions.microphone = status;
        controller().press(HealthItem::Microphone);
        EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::Microphone});
    }
    EXPECT_EQ(permissions.microphoneRequests, 0);
}

TEST_F(HealthControllerTest, SpeechIsTreatedLikeTheMicrophone)
{
    controller().press(HealthItem::Speech);
    EXPECT_EQ(permissions.speechRequests, 0);
    EXPECT_TRUE(workspace.openedSettings.isEmpty());

    permissions.speech = AuthorizationStatus::NotDetermined;
    permissions.holdsRequests = true;
    controller().requestSpeechPermission();
    EXPECT_EQ(permissions.speechRequests, 1);
    permissions.speech = AuthorizationStatus::Denied;
    permissions.takeRequest()(AuthorizationStatus::Denied);
    time.advance(0s);
    EXPECT_EQ(shown(HealthItem::Speech).color, HealthColor::Problem);

    controller().press(HealthItem::Speech);
    EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::SpeechRecognition});
    permissions.speech = AuthorizationStatus::Restricted;
    controller().press(HealthItem::Speech);
    EXPECT_EQ(workspace.openedSettings.size(), 2);
}

TEST_F(HealthControllerTest, AnAnswerAfterTheControllerHasGoneDoesNothing)
{
    permissions.microphone = AuthorizationStatus::NotDetermined;
    permissions.holdsRequests = true;
    controller().requestMicrophonePermission();
    forgetController();
    permissions.takeRequest()(AuthorizationStatus::Authorized);
    time.advance(0s);
    EXPECT_EQ(shown(HealthItem::Microphone).status, u"检测中…"_s);
}

TEST_F(HealthControllerTest, WithoutARecogniserThePageSaysHowToGetOne)
{
    texts = linuxTexts();
    recognizer.available = false;
    workspace.hasSettings = false;
    controller().press(HealthItem::Speech);

    ASSERT_EQ(alerts.shown().size(), 1);
    EXPECT_EQ(alerts.shown()[0].messageText, "There are no settings to open");
    EXPECT_EQ(alerts.shown()[0].informativeText,
        "Install a speech model, or choose a speech server on the page General.");
    EXPECT_EQ(alerts.shown()[0].buttons, QStringList{"OK"});
    alerts.answer(0);
}

TEST_F(HealthControllerTest, WhereThereAreNoSettingsWhatHelpsIsSaid)
{
    texts = linuxTexts();
    workspace.hasSettings = false;
    permissions.microphone = AuthorizationStatus::Denied;
    accessibility.trusted = false;
    controller().press(HealthItem::Microphone);
    controller().press(HealthItem::Accessibility);

    ASSERT_EQ(alerts.shown().size(), 2);
    EXPECT_TRUE(alerts.shown()[0].informativeText.contains("pavucontrol"));
    EXPECT_TRUE(alerts.shown()[1].informativeText.contains("at-spi2-core"));
    alerts.answer(0);
    alerts.answer(0);
}

// The other buttons.

TEST_F(HealthControllerTest, TheOtherButtonsLeadToOtherPages)
{
    controller().press(HealthItem::Api);
    controller().press(HealthItem::Delivery);
    controller().press(HealthNoteAction::ChangeShortcuts);
    EXPECT_EQ(trace, (QStringList{"sign in", "history", "shortcuts"}));
    EXPECT_TRUE(workspace.openedSettings.isEmpty());

    controller().press(HealthNoteAction::OpenSoundSettings);
    EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::Microphone});
    controller().press(HealthNoteAction::None);
    EXPECT_EQ(trace.size(), 3);
}

} // namespace
} // namespace tavrin
