#include "app/AppDelegate.h"

#include "app/ControllerFixture.h"
#include "dictionary/DictionaryStore.h"
#include "platform/linux/LinuxTexts.h"
#include "support/CapturedLog.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/sound/InMemoryAudioRecorders.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using AppDelegateTest = testing::ControllerFixture;

TEST_F(AppDelegateTest, LaunchTakesItsStepsInOrder)
{
    preferences->remove(keys::tavrinBetaOnboardingSeen);
    launch();

    EXPECT_EQ(takeTrace(),
        QStringList({"create interface", "load icon", "show status item", "configure window",
            "refresh health", "come to front", "show window", "GET /v1/auth/me",
            "store tavrinLastUpdateCheckAt", "GET /v1/client/update"}));
    time.advance(119ms);
    EXPECT_TRUE(alerts->shown().isEmpty());
    time.advance(1ms);
    EXPECT_EQ(alerts->shown().size(), 1);
    EXPECT_EQ(alerts->shown().first().messageText, u"欢迎使用 Tavrin 内测版"_s);
}

TEST_F(AppDelegateTest, TheShortcutsAreWatchedBeforeTheWindowIsShown)
{
    delegate.emplace(surroundings);
    EXPECT_EQ(keyboard->globalMonitors(), 0);
    workspace->onOwnActivation = [this] { EXPECT_EQ(keyboard->globalMonitors(), 1); };
    delegate->applicationDidFinishLaunching();

    EXPECT_EQ(workspace->ownActivations, 1);
}

TEST_F(AppDelegateTest, TheWindowIsConfiguredBeforeTheShortcutsAreWatched)
{
    std::optional<qsizetype> monitors;
    onNote = [&](const QString& line) {
        if (line == "configure window"_L1)
            monitors = keyboard->globalMonitors();
    };
    launch();

    EXPECT_EQ(monitors, 0);
    EXPECT_EQ(keyboard->globalMonitors(), 1);
}

TEST_F(AppDelegateTest, LaunchGoesOnWithoutAnIcon)
{
    hasIcon = false;
    launch();

    EXPECT_TRUE(windows->mainWindow().visible);
}

TEST_F(AppDelegateTest, WithoutASessionNothingIsValidatedAndTheSignInIsOffered)
{
    preferences->remove(keys::cloudAccessToken);
    launch();
    EXPECT_FALSE(takeTrace().contains("GET /v1/auth/me"));

    time.advance(120ms);
    EXPECT_EQ(takeTrace(), QStringList({"select page 6"}));
    time.advance(120ms);
    EXPECT_EQ(takeTrace(), QStringList({"show login"}));
}

TEST_F(AppDelegateTest, AStoredSessionOffersNoSignIn)
{
    launch();
    takeTrace();
    time.advance(1s);

    EXPECT_EQ(takeTrace(), QStringList());
}

class StoredSessionAtLaunchTest : public AppDelegateTest {
protected:
    StoredSessionAtLaunchTest()
    {
        preferences->arrange(keys::cloudRefreshToken, u""_s);
        preferences->arrange(keys::cloudAccountEmail, u"ann@example.com"_s);
        preferences->arrange(keys::tavrinLastUpdateCheckAt, time.sinceEpoch().count());
        preferences->synchronize();
        launch();
        takeTrace();
    }

    const QStringList sessionKeys{
        keys::cloudAccessToken, keys::cloudRefreshToken, keys::cloudAccountEmail};
};

TEST_F(StoredSessionAtLaunchTest, ASessionThatTheServiceRefusesIsForgottenForGoodWithoutAnAlert)
{
    QVariantList storedAtTheRefresh;
    onNote = [&](const QString& line) {
        if (line == "refresh account"_L1)
            storedAtTheRefresh.append(preferences->value(keys::cloudAccessToken));
    };
    http->answer(401, R"({"error": {"message": "gone"}})");
    time.advance(0s);

    for (const QString& key : sessionKeys) {
        EXPECT_FALSE(preferences->value(key).isValid()) << key.toStdString();
        EXPECT_FALSE(preferences->flushed(key).isValid()) << key.toStdString();
    }
    EXPECT_EQ(storedAtTheRefresh, QVariantList({QVariant()}));
    EXPECT_TRUE(alerts->shown().isEmpty());
}

TEST_F(StoredSessionAtLaunchTest, ASessionStaysWhenTheServiceCannotBeReached)
{
    http->fail(HttpFailure::Unreachable);
    time.advance(0s);

    for (const QString& key : sessionKeys) {
        EXPECT_TRUE(preferences->value(key).isValid()) << key.toStdString();
        EXPECT_TRUE(preferences->flushed(key).isValid()) << key.toStdString();
    }
    EXPECT_EQ(takeTrace(), QStringList({"refresh account"}));
    EXPECT_TRUE(alerts->shown().isEmpty());
}

TEST_F(AppDelegateTest, AnAutomaticCheckWithinSixHoursIsSkippedAtLaunch)
{
    preferences->arrange(keys::tavrinLastUpdateCheckAt, time.sinceEpoch().count() - 60);
    launch();

    EXPECT_FALSE(trace.contains("GET /v1/client/update"));
}

TEST_F(AppDelegateTest, ShowingTheWindowRefreshesTheHealthAndComesToTheFront)
{
    launch();
    takeTrace();
    delegate->showMainWindow();

    EXPECT_EQ(takeTrace(), QStringList({"refresh health", "come to front", "show window"}));
}

TEST_F(AppDelegateTest, HidingTheWindowHidesOnlyTheWindow)
{
    launch();
    takeTrace();
    delegate->hideMainWindow();

    EXPECT_EQ(takeTrace(), QStringList({"hide window"}));
}

TEST_F(AppDelegateTest, TheDesktopIsToldNotToQuitWithTheLastWindow)
{
    EXPECT_FALSE(AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(AppDelegateTest, WindowsMayBeRestoredSecurely)
{
    EXPECT_TRUE(AppDelegate::applicationSupportsSecureRestorableState());
}

TEST_F(AppDelegateTest, BecomingActiveRefreshesTheHealth)
{
    launch();
    takeTrace();
    delegate->applicationDidBecomeActive();

    EXPECT_EQ(takeTrace(), QStringList({"refresh health"}));
}

TEST_F(AppDelegateTest, ReopeningShowsTheWindowWhenNoneIsVisible)
{
    launch();
    takeTrace();

    EXPECT_TRUE(delegate->applicationShouldHandleReopen(false));
    EXPECT_EQ(takeTrace(), QStringList({"refresh health", "come to front", "show window"}));

    EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(AppDelegateTest, QuittingSavesWhatACorrectionTeachesBeforeTheEnd)
{
    auto field = std::make_shared<testing::FakeElement>();
    field->processIdentifier = 7;
    auto& accessibility = dynamic_cast<testing::InMemoryAccessibility&>(*platform.accessibility);
    auto& pasteboard = dynamic_cast<testing::InMemoryPasteboard&>(*platform.pasteboard);
    dynamic_cast<testing::RecordingKeyboard&>(*platform.syntheticKeyboard).onPaste = [&] {
        field->insert(pasteboard.string());
    };
    accessibility.focusedElements[7] = field;
    workspace->frontmost = RunningApplication{7, u"Notes"_s, u"org.example.Notes"_s, 0};
    launch();
    while (http->open() > 0)
        http->answer(200, "{}");
    statusItem->press("Start dictation (Right Option)");
    time.advance(3s);
    statusItem->press("Finish and insert (Right Option)");
    time.advance(0s);
    recognizer->calls.back().answer(u"we use open ai daily"_s);
    time.advance(0s);
    http->answer(200, R"({"text": "We use open ai daily."})");
    time.advance(2s);
    ASSERT_EQ(field->text, u"We use open ai daily."_s);
    field->text = u"We use OpenAI daily."_s;
    time.advance(1s);
    takeTrace();

    delegate->quit();

    EXPECT_EQ(takeTrace(),
        QStringList({"store dictionaryLearningCandidateCounts", "store personalDictionaryEntries",
            "store personalDictionary", "synchronize", "refresh dictionary", "terminate"}));
    EXPECT_EQ(
        preferences->value(keys::personalDictionary).toStringList(), QStringList{u"OpenAI"_s});
}

TEST_F(AppDelegateTest, TerminationPutsTheInputDeviceBackAndReleasesTheTarget)
{
    preferences->arrange(keys::preferredMicrophoneUID, u"headset"_s);
    auto element = std::make_shared<testing::FakeElement>();
    element->processIdentifier = 7;
    auto& accessibility = dynamic_cast<testing::InMemoryAccessibility&>(*platform.accessibility);
    workspace->frontmost = RunningApplication{7, u"Notes"_s, u"org.example.Notes"_s, 0};
    accessibility.focusedElements[7] = element;
    launch();
    statusItem->press("Start dictation (Right Option)");
    EXPECT_EQ(devices->defaultInput, headset);
    EXPECT_EQ(accessibility.liveReferences, 1);

    delegate->applicationWillTerminate();

    EXPECT_EQ(devices->defaultInput, builtInMicrophone);
    EXPECT_EQ(accessibility.liveReferences, 0);
}

TEST_F(AppDelegateTest, TheMenuReachesEveryNeighbour)
{
    launch();
    time.advance(1s);
    takeTrace();

    statusItem->press("Show Tavrin");
    EXPECT_EQ(takeTrace(), QStringList({"refresh health", "come to front", "show window"}));
    statusItem->press("History…");
    EXPECT_EQ(takeTrace(), QStringList({"show history"}));
    statusItem->press("Writing style settings…");
    EXPECT_EQ(takeTrace(), QStringList({"show personalization"}));
    statusItem->press("Check for updates…");
    EXPECT_EQ(takeTrace(), QStringList({"store tavrinLastUpdateCheckAt", "GET /v1/client/update"}));
    statusItem->press("Quit Tavrin");
    EXPECT_EQ(takeTrace(), QStringList({"terminate"}));
}

TEST_F(AppDelegateTest, TheMenuStartsAndFinishesASession)
{
    launch();
    statusItem->press("Start chat (⇧⌘ Space)");
    EXPECT_EQ(statusItem->title, u"聊"_s);
    EXPECT_TRUE(trace.contains("panel operation chat"));

    statusItem->press("Finish chat (⇧⌘ Space)");
    EXPECT_EQ(statusItem->title, u"…"_s);
}

TEST_F(AppDelegateTest, AShortcutStartsASessionAndEscapePausesIt)
{
    launch();
    keyboard->sendToOtherProgram(
        {KeyEvent::Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false});
    time.advance(0s);
    EXPECT_EQ(statusItem->title, u"●"_s);

    keyboard->sendToOtherProgram({KeyEvent::Kind::KeyDown, key_codes::escape, {}, false});
    time.advance(0s);
    EXPECT_TRUE(trace.contains("panel cancel?"));
}

TEST_F(AppDelegateTest, EscapeInAnOwnWindowBelongsToTheSessionOnlyWhileItRecords)
{
    const KeyEvent escape{KeyEvent::Kind::KeyDown, key_codes::escape, {}, false};
    launch();
    EXPECT_FALSE(keyboard->sendToOwnWindow(escape));

    statusItem->press("Start chat (⇧⌘ Space)");
    EXPECT_TRUE(keyboard->sendToOwnWindow(escape));
    EXPECT_TRUE(keyboard->sendToOwnWindow(escape)); // Cancels.

    statusItem->press("Start chat (⇧⌘ Space)");
    statusItem->press("Finish chat (⇧⌘ Space)");
    EXPECT_EQ(statusItem->title, u"…"_s);
    EXPECT_FALSE(keyboard->sendToOwnWindow(escape));
}

TEST_F(AppDelegateTest, EscapeInAnotherProgramChangesNothingUnlessTheSessionRecords)
{
    const KeyEvent escape{KeyEvent::Kind::KeyDown, key_codes::escape, {}, false};
    launch();
    time.advance(1s);
    const QString idleTitle = statusItem->title;
    takeTrace();
    keyboard->sendToOtherProgram(escape);
    time.advance(1s);
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(statusItem->title, idleTitle);

    statusItem->press("Start chat (⇧⌘ Space)");
    statusItem->press("Finish chat (⇧⌘ Space)");
    time.advance(0s);
    takeTrace();
    keyboard->sendToOtherProgram(escape);
    time.advance(0s);
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(statusItem->title, u"…"_s);
}

TEST_F(AppDelegateTest, OtherSoundIsMutedWhileARecordingGoesOn)
{
    constexpr AudioDeviceId loudspeaker = 3;
    devices->addLoudspeaker(loudspeaker, u"speakers"_s);
    devices->defaultOutput = loudspeaker;
    preferences->arrange(keys::muteDuringRecording, true);
    launch();

    statusItem->press("Start chat (⇧⌘ Space)");
    time.advance(220ms);
    EXPECT_EQ(devices->device(loudspeaker).mute, 1U);

    statusItem->press("Finish chat (⇧⌘ Space)");
    EXPECT_EQ(devices->device(loudspeaker).mute, 0U);
}

TEST_F(AppDelegateTest, ASessionThatIsProcessedByThenMutesNothing)
{
    constexpr AudioDeviceId loudspeaker = 3;
    devices->addLoudspeaker(loudspeaker, u"speakers"_s);
    devices->defaultOutput = loudspeaker;
    preferences->arrange(keys::muteDuringRecording, true);
    launch();

    statusItem->press("Start chat (⇧⌘ Space)");
    time.advance(100ms);
    statusItem->press("Finish chat (⇧⌘ Space)");
    time.advance(1s);

    EXPECT_EQ(statusItem->title, u"…"_s);
    EXPECT_EQ(devices->device(loudspeaker).mute, 0U);
}

TEST_F(AppDelegateTest, AHeldShortcutIsOnePressAndTheNextOneFinishes)
{
    const KeyEvent press{
        KeyEvent::Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false};
    const KeyEvent release{KeyEvent::Kind::FlagsChanged, key_codes::rightOption, {}, false};
    launch();

    keyboard->sendToOtherProgram(press);
    keyboard->sendToOtherProgram(press); // Still held.
    time.advance(1s);
    EXPECT_EQ(statusItem->title, u"●"_s);

    keyboard->sendToOtherProgram(release);
    time.advance(0s);
    EXPECT_EQ(statusItem->title, u"●"_s);
    keyboard->sendToOtherProgram(press);
    time.advance(0s);
    EXPECT_EQ(statusItem->title, u"…"_s);
}

TEST_F(AppDelegateTest, WhatTheFirstSessionNeedsIsLoadedASecondAfterTheLaunch)
{
    const auto& recorders =
        dynamic_cast<testing::InMemoryAudioRecorders&>(*platform.audioRecorders);
    const QString history = folder.filePath("Tavrin/TranscriptionHistory.json");
    launch();
    time.advance(999ms);
    EXPECT_EQ(recognizer->warmUps + workspace->warmUps + recorders.warmUps, 0);
    EXPECT_FALSE(QFile::exists(history));
    time.advance(1ms);
    EXPECT_EQ(recognizer->warmUps, 1);
    EXPECT_EQ(workspace->warmUps, 1);
    EXPECT_EQ(recorders.warmUps, 1);
    EXPECT_TRUE(QFile::exists(history));
}

TEST_F(AppDelegateTest, ADefaultMovesAsideOnceTheDesktopHasItsKeys)
{
    preferences->remove(keys::translationShortcutIdentifiers);
    preferences->remove(keys::chatShortcutIdentifiers);
    probe->keptUnlessHeld = std::nullopt;
    launch();
    EXPECT_EQ(statusItem->menu[1].title, u"Start translation (⌥ Space → English)"_s);
    time.advance(1s);
    takeTrace();

    probe->heldByOthers = {{key_codes::space, KeyModifier::Option}};
    time.advance(28999ms);
    EXPECT_EQ(statusItem->menu[1].title, u"Start translation (⌥ Space → English)"_s);
    time.advance(1ms);
    EXPECT_EQ(statusItem->menu[1].title, u"Start translation (⌃⌥ Space → English)"_s);
    EXPECT_EQ(
        statusItem->toolTip, u"Dictation Right Option · Translation ⌃⌥ Space · Chat ⇧⌘ Space"_s);
    EXPECT_TRUE(trace.contains("refresh shortcuts"));
}

TEST_F(AppDelegateTest, ASessionInWhichNotEveryProgramIsReachedIsLoggedOnce)
{
    const testing::CapturedLog log;
    platform.texts = linuxTexts();
    const QString line = linuxTexts().limitedReach->en.toString();
    launch();
    time.advance(40s);
    EXPECT_FALSE(log.lines().contains(line));

    delegate.reset();
    workspace->everyProgramReached = false;
    launch();
    delegate->showMainWindow();
    time.advance(40s);
    EXPECT_EQ(log.lines().count(line), 1);
}

TEST_F(AppDelegateTest, TheWordsOfTheDesktopReachTheErrorsOfSpeech)
{
    platform.texts = linuxTexts();
    recognizer->available = false;
    launch();
    statusItem->press("Start dictation (Right Option)");
    statusItem->press("Finish and insert (Right Option)");
    time.advance(0s);

    ASSERT_EQ(alerts->shown().size(), 1);
    EXPECT_EQ(
        alerts->shown().first().informativeText, linuxTexts().speechUnavailable->en.toString());
}

TEST_F(AppDelegateTest, AfterTheLaunchTheLogTellsWhichShortcutsAreHeld)
{
    const testing::CapturedLog log;
    probe->heldByOthers = {{key_codes::space, KeyModifier::Option}};
    launch();
    time.advance(999ms);
    const QString line = u"Another program holds the shortcut ⌥ Space"_s;
    EXPECT_FALSE(log.lines().contains(line));
    time.advance(1ms);
    EXPECT_TRUE(log.lines().contains(line));
}

TEST_F(AppDelegateTest, TheDefaultOfChatStaysAndIsLoggedWhenAnotherProgramHoldsIt)
{
    const testing::CapturedLog log;
    preferences->remove(keys::chatShortcutIdentifiers);
    probe->heldByOthers = {
        {key_codes::space, KeyModifiers(KeyModifier::Command) | KeyModifier::Shift}};
    launch();
    time.advance(40s);

    EXPECT_EQ(
        preferences->value(keys::chatShortcutIdentifiers), QStringList{u"commandShiftSpace"_s});
    EXPECT_EQ(log.lines().count(u"Another program holds the shortcut ⇧⌘ Space"_s), 1);
}

TEST_F(AppDelegateTest, ARecordingIsHeardWithTheMostUsedTermsOfTheDictionary)
{
    QList<DictionaryEntry> entries;
    QStringList mostUsed;
    for (int i = 0; i < 200; ++i) {
        QVariantMap stored = DictionaryEntry::manual(u"term %1"_s.arg(i), Seconds{0}).stored();
        stored[u"hitCount"_s] = i / 2; // Two each: the later changed goes first.
        stored[u"updatedAt"_s] = i;
        entries.append(DictionaryEntry(stored));
        mostUsed.prepend(entries.last().term());
    }
    SaveDictionaryEntries(*preferences, entries);
    launch();
    statusItem->press("Start chat (⇧⌘ Space)");
    statusItem->press("Finish chat (⇧⌘ Space)");
    time.advance(0s);

    ASSERT_EQ(recognizer->calls.size(), 1U);
    const QStringList terms = recognizer->calls[0].request.contextualStrings;
    ASSERT_EQ(terms.size(), 100);
    EXPECT_EQ(terms.first(), u"Tavrin"_s);
    EXPECT_EQ(terms.at(16), u"Cursor"_s);
    EXPECT_EQ(terms.mid(17), mostUsed.first(83));
}

TEST_F(AppDelegateTest, LiveTextKnowsTheTermsOfTheDictionary)
{
    SaveDictionaryEntries(*preferences, {DictionaryEntry::manual(u"Anna"_s, Seconds{0})});
    launch();
    statusItem->press("Start chat (⇧⌘ Space)");
    time.advance(0s);

    const auto& live =
        dynamic_cast<testing::InMemoryLiveSpeechRecognizer&>(*platform.liveSpeechRecognizer);
    ASSERT_EQ(live.calls.size(), 1U);
    EXPECT_TRUE(live.calls[0].request.contextualStrings.contains(u"Anna"_s));
}

TEST_F(AppDelegateTest, TheHistoryIsReadWhileTheUserSpeaks)
{
    launch();
    EXPECT_EQ(background->pending(), 0);
    statusItem->press("Start dictation (Right Option)");
    EXPECT_EQ(background->pending(), 2); // And the lock of the recording is taken.
}

TEST_F(AppDelegateTest, RecordingsThatACrashLeftAreDeletedAfterTheLaunch)
{
    QFile left(folder.filePath("tavrin-3F2504E0-4F89-41D3-9A0C-0305E82C3301.m4a"));
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.close();
    launch();
    EXPECT_TRUE(left.exists());

    time.advance(0s);
    EXPECT_FALSE(left.exists());
}

TEST_F(AppDelegateTest, NothingStillComesAfterTheControllersEnd)
{
    preferences->remove(keys::tavrinBetaOnboardingSeen);
    launch();
    delegate.reset();
    time.advance(1s);

    EXPECT_TRUE(alerts->shown().isEmpty());
}

} // namespace
} // namespace tavrin
