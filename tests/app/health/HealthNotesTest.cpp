#include "app/health/HealthNotes.h"

#include "app/health/HealthFixture.h"
#include "platform/linux/LinuxTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// A desktop that names its recogniser, and has nothing else to say.
class HealthNotesTest : public testing::HealthFixture {
protected:
    static constexpr KeyModifiers option = KeyModifier::Option;
    static constexpr KeyModifiers commandShift =
        KeyModifiers(KeyModifier::Command) | KeyModifier::Shift;

    HealthNotesTest() { texts = linuxTexts(); }

    [[nodiscard]] QList<HealthNote> notes() { return readHealthNotes(sources()); }

    /// The only note beside the recogniser's.
    [[nodiscard]] HealthNote other()
    {
        const QList<HealthNote> all = notes();
        EXPECT_EQ(all.size(), 2);
        return all.value(1);
    }

    void hold(KeyModifiers modifiers) { probe.heldByOthers.append({key_codes::space, modifiers}); }
};

TEST_F(HealthNotesTest, WhereEverythingIsWellOnlyTheRecogniserIsNamed)
{
    const QList<HealthNote> all = notes();

    ASSERT_EQ(all.size(), 1);
    EXPECT_EQ(all[0].title, "Recogniser");
    EXPECT_EQ(all[0].color, HealthColor::Healthy);
    EXPECT_EQ(all[0].action, HealthNoteAction::None);
}

TEST_F(HealthNotesTest, ADesktopWithoutAChoiceOfRecognisersHasNoNotes)
{
    texts.recogniser.reset();
    devices.device(1).silent = true;
    hold(option);
    workspace.everyProgramReached = false;

    EXPECT_TRUE(notes().isEmpty());
    EXPECT_TRUE(probe.probed.isEmpty());
}

// The recogniser.

TEST_F(HealthNotesTest, TheRecogniserIsNamedWithItsLanguage)
{
    EXPECT_EQ(notes()[0].text, u"✓ Recogniser, language: Mandarin"_s);
    systemInfo.recognisedLanguage = u"en-US"_s;
    EXPECT_EQ(notes()[0].text, u"✓ Recogniser, language: English"_s);
    setLanguage(u"zh-Hans"_s);
    EXPECT_EQ(notes()[0].text, u"✓ 识别器，识别语言：英语"_s);
    setLanguage(u"zh-Hant"_s);
    EXPECT_EQ(notes()[0].text, u"✓ 辨識器，辨識語言：英語"_s);
    EXPECT_EQ(notes()[0].title, u"辨識引擎"_s);
}

TEST_F(HealthNotesTest, ALanguageWithoutANameIsShownByItsTag)
{
    systemInfo.recognisedLanguage = u"gsw-CH"_s;
    EXPECT_EQ(notes()[0].text, u"✓ Recogniser, language: gsw-CH"_s);
    systemInfo.recognisedLanguage.clear();
    EXPECT_EQ(notes()[0].text, u"✓ Recogniser"_s);
}

/// One that says its language itself.
class Polyglot final : public FileSpeechRecognizer {
public:
    [[nodiscard]] bool isAvailable() const override { return true; }

    [[nodiscard]] SpeechAvailability availability() const override
    {
        return {true, LocalizedText{u"内置：%1", u"內建：%1", u"Built in: %1"}, u"en-US"_s};
    }

    void warmUp() override { }

    [[nodiscard]] std::unique_ptr<SpeechTask> recognize(
        const QString&, const SpeechRequest&, SpeechResultHandler) override
    {
        return nullptr;
    }
};

TEST_F(HealthNotesTest, ARecogniserThatNamesItsLanguageItselfNamesItOnce)
{
    systemInfo.recognisedLanguage = u"en-US"_s;
    const Polyglot polyglot;
    const HealthSources base = sources();
    const HealthSources others{base.accessibility, base.audioDevices, base.clock, base.hotKeyProbe,
        base.localization, base.permissions, base.preferences, polyglot, base.settings,
        base.systemInfo, base.workspace};

    EXPECT_EQ(readHealthNotes(others).value(0).text, u"✓ Built in: English"_s);
}

TEST_F(HealthNotesTest, ARecogniserThatFailedTheLastTimeIsAProblem)
{
    recognizer.lastFailure = u"无法连接语音识别服务器。"_s;
    EXPECT_EQ(notes()[0].text,
        u"⚠ Recogniser, language: Mandarin. It failed the last time: 无法连接语音识别服务器。"_s);
    EXPECT_EQ(notes()[0].color, HealthColor::Problem);

    recognizer.lastFailure.clear();
    EXPECT_EQ(notes()[0].color, HealthColor::Healthy);
}

TEST_F(HealthNotesTest, AMissingRecogniserSaysWhatItLacks)
{
    recognizer.available = false;
    recognizer.availabilityText = LocalizedText{u"没有 %1", u"沒有 %1", u"%1 is missing."};
    recognizer.availabilityArgument = u"the model\n<b>of %1</b>"_s;

    EXPECT_EQ(notes()[0].text, u"⚠ the model <b>of %1</b> is missing."_s);
    EXPECT_EQ(notes()[0].color, HealthColor::Problem);
}

TEST_F(HealthNotesTest, OneThatDoesNotKnowWhatItLacksIsOnlyUnavailable)
{
    recognizer.available = false;
    EXPECT_EQ(notes()[0].text, u"⚠ Speech recognition is not available now."_s);
    setLanguage(u"zh-Hans"_s);
    EXPECT_EQ(notes()[0].text, u"⚠ 语音识别当前不可用。"_s);
}

// The microphone.

TEST_F(HealthNotesTest, ASilentMicrophoneIsNamed)
{
    devices.device(1).silent = true;
    const HealthNote note = other();

    EXPECT_EQ(note.title, "Microphone");
    EXPECT_EQ(note.text,
        u"⚠ “Built-in” is muted, turned down or not plugged in: only silence comes from it."_s);
    EXPECT_EQ(note.color, HealthColor::Problem);
    EXPECT_EQ(note.action, HealthNoteAction::OpenSoundSettings);
    EXPECT_EQ(note.button, "Sound settings");
}

TEST_F(HealthNotesTest, OnlyTheMicrophoneInUseCounts)
{
    devices.device(2).silent = true;
    EXPECT_EQ(notes().size(), 1);

    preferences.setValue(keys::preferredMicrophoneUID, u"headset"_s);
    EXPECT_TRUE(other().text.contains(u"“Headset”"_s));

    devices.device(2).inputChannels = 0; // Its output alone is left.
    EXPECT_EQ(notes().size(), 1);
    preferences.setValue(keys::preferredMicrophoneUID, u"unplugged"_s);
    EXPECT_EQ(notes().size(), 1);
}

TEST_F(HealthNotesTest, WhatCannotBeReadIsNotCalledSilent)
{
    devices.device(1).silent.reset();
    EXPECT_EQ(notes().size(), 1);
    devices.defaultInput.reset();
    EXPECT_EQ(notes().size(), 1);
    devices.answers = false;
    EXPECT_EQ(notes().size(), 1);
}

TEST_F(HealthNotesTest, AMicrophoneMayHaveAnyName)
{
    devices.device(1).silent = true;
    devices.device(1).name = u"%1\n"_s + QString(10'000, u'M');
    const QString text = other().text;
    EXPECT_TRUE(text.startsWith(u"⚠ “%1 MMM"_s));
    EXPECT_LT(text.size(), 200);

    devices.device(1).name.reset();
    EXPECT_TRUE(other().text.startsWith(u"⚠ “”"_s));
}

// Shortcuts.

TEST_F(HealthNotesTest, AHeldShortcutIsNamedWithItsHolderWhereThatIsKnown)
{
    hold(option);
    probe.holderName = u"Xfwm4"_s;
    const HealthNote note = other();
    EXPECT_EQ(note.title, "Shortcuts");
    EXPECT_EQ(note.text, u"⚠ Xfwm4 holds ⌥ Space."_s);
    EXPECT_EQ(note.color, HealthColor::Problem);
    EXPECT_EQ(note.action, HealthNoteAction::ChangeShortcuts);
    EXPECT_EQ(note.button, "Change");

    probe.holderName.clear();
    EXPECT_EQ(other().text, u"⚠ Another program holds ⌥ Space."_s);
    setLanguage(u"zh-Hans"_s);
    EXPECT_EQ(other().text, u"⚠ ⌥ Space 已被其他程序占用。"_s);
}

TEST_F(HealthNotesTest, SeveralHeldShortcutsAreNamedTogether)
{
    hold(option);
    hold(commandShift);
    EXPECT_EQ(
        other().text, u"⚠ Another program holds ⌥ Space. ⚠ Another program holds ⇧⌘ Space."_s);
}

TEST_F(HealthNotesTest, ACombinationThatIsNotInUseMayBeHeld)
{
    hold(KeyModifiers(KeyModifier::Control) | KeyModifier::Option);
    EXPECT_EQ(notes().size(), 1);
    preferences.setValue(keys::translationShortcutIdentifiers, QVariantList());
    hold(option);
    EXPECT_EQ(notes().size(), 1);
}

// The session.

TEST_F(HealthNotesTest, ASessionThatReachesOnlySomeProgramsIsAProblem)
{
    workspace.everyProgramReached = false;
    const HealthNote note = other();
    EXPECT_EQ(note.title, "Session");
    EXPECT_EQ(note.text,
        u"⚠ This is a Wayland session: Tavrin reaches only programs that run on XWayland."_s);
    EXPECT_EQ(note.color, HealthColor::Problem);
}

TEST_F(HealthNotesTest, EverythingThatIsWrongIsSaidInOneOrder)
{
    devices.device(1).silent = true;
    hold(option);
    workspace.everyProgramReached = false;
    QStringList titles;
    for (const HealthNote& note : notes())
        titles.append(note.title);

    EXPECT_EQ(titles, (QStringList{"Recogniser", "Microphone", "Shortcuts", "Session"}));
    EXPECT_EQ(read().notes, notes());
}

// Programs to restart.

TEST_F(HealthNotesTest, ProgramsToRestartAreListedInTheWayOfTheLanguage)
{
    const QStringList names{u"Files"_s, u"Firefox\n%1"_s, QString(1000, u'x')};
    const HealthNote note = restartNote(localization(), names);
    EXPECT_EQ(note.title, "Accessibility");
    EXPECT_TRUE(note.text.startsWith(
        u"⚠ Restart these programs, so that Tavrin can write into them: Files, Firefox %1, xxx"_s));
    EXPECT_LT(note.text.size(), 200);
    EXPECT_EQ(note.color, HealthColor::Problem);

    setLanguage(u"zh-Hans"_s);
    EXPECT_EQ(restartNote(localization(), {u"文件"_s, u"终端"_s}).text,
        u"⚠ 请重新启动以下程序，Tavrin 才能写入：文件、终端"_s);
}

} // namespace
} // namespace tavrin
