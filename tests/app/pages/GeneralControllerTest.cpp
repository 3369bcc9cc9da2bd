#include "app/pages/GeneralController.h"

#include "app/FakePanels.h"
#include "app/pages/Captions.h"
#include "app/pages/GeneralTexts.h"
#include "app/settings/Localization.h"
#include "app/vocabulary/SpeechLanguages.h"
#include "audio/AudioEnvironment.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryRecogniserSettings.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class GeneralControllerTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryAudioDevices devices;
    testing::InMemoryRecogniserSettings recognisers;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    testing::FakeView<GeneralContent> page;
    AudioEnvironment audio{devices, preferences, supportIn(folder), time, [] { return false; }};
    GeneralController controller{{alerts, audio, localization, preferences, recognisers}};

    GeneralControllerTest()
    {
        preferences.setValue(keys::interfaceLanguage, u"en"_s);
        controller.setView(&page);
    }

    const SystemInfo& supportIn(const QTemporaryDir& support)
    {
        systemInfo.supportFolder = support.path();
        return systemInfo;
    }

    void plugInTwo()
    {
        devices.addMicrophone(7, u"headset"_s, u"uid-headset"_s);
        devices.addMicrophone(8, u"Built-in"_s, u"uid-built-in"_s);
    }

    void offerTwoRecognisers()
    {
        recognisers.offered.recognisers = {{u"own"_s, LocalizedText{u"内置", u"內建", u"Built-in"}},
            {u"far"_s, LocalizedText{u"远", u"遠", u"Far away"}}};
        recognisers.offered.recogniser = u"own"_s;
        recognisers.offered.languages = {u"en-US"_s, u"zh-CN"_s};
        recognisers.offered.language = u"en-US"_s;
    }

    static QStringList titles(const PopupContent& popup)
    {
        QStringList shown;
        for (const PopupContent::Item& item : popup.items)
            shown.append(item.title);
        return shown;
    }

    QStringList microphones() const
    {
        QStringList shown;
        for (const MicrophoneContent::Item& item : page.shown->microphones.items)
            shown.append(item.title);
        return shown;
    }

    qsizetype selectedMicrophone() const { return page.shown->microphones.selected; }

    QStringList languagesFor(const QStringList& tags, const QString& chosen)
    {
        offerTwoRecognisers();
        recognisers.offered.languages = tags;
        recognisers.offered.language = chosen;
        return titles(controller.content().recogniser->languages);
    }
};

TEST_F(GeneralControllerTest, TheLanguagesStandUnderTheirOwnNames)
{
    EXPECT_EQ(GeneralController::interfaceLanguageTitles(),
        (QStringList{u"简体中文"_s, u"繁體中文"_s, u"English"_s}));
}

TEST_F(GeneralControllerTest, TheLanguageInEffectIsSelected)
{
    EXPECT_EQ(controller.content().interfaceLanguage, 2);
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    EXPECT_EQ(controller.content().interfaceLanguage, 1);
    preferences.remove(keys::interfaceLanguage);
    workspace.languages = {u"fr-FR"_s};
    EXPECT_EQ(controller.content().interfaceLanguage, 0);
}

TEST_F(GeneralControllerTest, ChoosingALanguageStoresItAndAsksToReopen)
{
    controller.selectInterfaceLanguage(1);

    EXPECT_EQ(preferences.flushed(keys::interfaceLanguage), QVariant(u"zh-Hant"_s));
    ASSERT_EQ(alerts.shown().size(), 1);
    EXPECT_EQ(alerts.shown()[0].messageText, u"介面語言已更新"_s);
    EXPECT_EQ(page.shown->interfaceLanguage, 1);

    controller.selectInterfaceLanguage(9);
    EXPECT_EQ(page.shown->interfaceLanguage, 2);
    controller.selectInterfaceLanguage(-1);
    EXPECT_EQ(page.shown->interfaceLanguage, 0);
}

TEST_F(GeneralControllerTest, ThePageSaysHowManyLanguagesThereAreToTranslateInto)
{
    EXPECT_EQ(controller.translationLanguagesCount(),
        "Currently supports 42 common target languages; quality may vary for less common "
        "languages.");
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    EXPECT_EQ(controller.translationLanguagesCount(),
        u"目前支持 42 种常用目标语言；较少使用的语言质量可能有差异。"_s);
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    EXPECT_EQ(controller.translationLanguagesCount(),
        u"目前支援 42 種常用目標語言；較少使用的語言品質可能有差異。"_s);
}

TEST_F(GeneralControllerTest, WithoutMicrophonesOnlyTheSystemsDefaultIsThere)
{
    controller.refreshMicrophoneControls();
    EXPECT_EQ(microphones(), QStringList{u"Follow system default"_s});
    EXPECT_EQ(selectedMicrophone(), 0);

    plugInTwo();
    devices.answers = false;
    controller.refreshMicrophoneControls();
    EXPECT_EQ(microphones(), QStringList{u"Follow system default"_s});
}

TEST_F(GeneralControllerTest, MicrophonesStandByNameAfterTheDefault)
{
    plugInTwo();
    preferences.setValue(keys::preferredMicrophoneUID, u"uid-headset"_s);
    controller.refreshMicrophoneControls();

    EXPECT_EQ(
        microphones(), (QStringList{u"Follow system default"_s, u"Built-in"_s, u"headset"_s}));
    EXPECT_EQ(selectedMicrophone(), 2);
}

TEST_F(GeneralControllerTest, AMicrophoneThatIsPluggedInShowsAtTheNextRefresh)
{
    controller.refreshMicrophoneControls();
    plugInTwo();
    EXPECT_EQ(controller.content().microphones.items.size(), 1);

    controller.refreshMicrophoneControls();
    EXPECT_EQ(microphones().size(), 3);
}

TEST_F(GeneralControllerTest, OfTwoWithOneUidTheLaterIsSelected)
{
    devices.addMicrophone(7, u"A"_s, u"twin"_s);
    devices.addMicrophone(8, u"B"_s, u"twin"_s);
    preferences.setValue(keys::preferredMicrophoneUID, u"twin"_s);
    controller.refreshMicrophoneControls();

    EXPECT_EQ(selectedMicrophone(), 2);
}

TEST_F(GeneralControllerTest, TheChosenMicrophoneIsStoredByItsUid)
{
    plugInTwo();
    controller.refreshMicrophoneControls();
    controller.selectPreferredMicrophone(1);
    EXPECT_EQ(preferences.flushed(keys::preferredMicrophoneUID), QVariant(u"uid-built-in"_s));
    EXPECT_EQ(selectedMicrophone(), 1);

    controller.selectPreferredMicrophone(0);
    EXPECT_FALSE(preferences.flushed(keys::preferredMicrophoneUID).isValid());
    EXPECT_EQ(selectedMicrophone(), 0);

    controller.selectPreferredMicrophone(9);
    EXPECT_EQ(preferences.flushed(keys::preferredMicrophoneUID), QVariant(u"uid-headset"_s));
    controller.selectPreferredMicrophone(-1);
    EXPECT_FALSE(preferences.flushed(keys::preferredMicrophoneUID).isValid());
}

TEST_F(GeneralControllerTest, BeforeTheFirstRefreshThereIsNoMicrophoneToChoose)
{
    preferences.setValue(keys::preferredMicrophoneUID, u"uid-headset"_s);
    controller.selectPreferredMicrophone(0);

    EXPECT_EQ(preferences.value(keys::preferredMicrophoneUID), QVariant(u"uid-headset"_s));
}

TEST_F(GeneralControllerTest, MutingIsOffUntilItIsSwitchedOn)
{
    EXPECT_FALSE(controller.content().mutesDuringRecording);

    controller.toggleMuteDuringRecording(true);
    EXPECT_TRUE(page.shown->mutesDuringRecording);
    EXPECT_EQ(preferences.flushed(keys::muteDuringRecording), QVariant(true));

    controller.toggleMuteDuringRecording(false);
    EXPECT_FALSE(page.shown->mutesDuringRecording);
    EXPECT_EQ(preferences.flushed(keys::muteDuringRecording), QVariant(false));
}

TEST_F(GeneralControllerTest, WhereThereIsNoChoiceOfRecognisersThePageHasNone)
{
    EXPECT_FALSE(controller.content().recogniser);

    controller.selectRecogniser(0);
    controller.selectRecogniserLanguage(0);
    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(GeneralControllerTest, RecogniserAndLanguageAreShownByName)
{
    offerTwoRecognisers();
    const RecogniserContent content = controller.content().recogniser.value();

    EXPECT_EQ(titles(content.recognisers), (QStringList{u"Built-in"_s, u"Far away"_s}));
    EXPECT_EQ(content.recognisers.selected, 0);
    EXPECT_EQ(titles(content.languages), (QStringList{u"English"_s, u"Mandarin"_s}));
    EXPECT_EQ(content.languages.selected, 0);
    EXPECT_TRUE(content.hasLanguages);
}

TEST_F(GeneralControllerTest, ARecogniserIsChosenAndHoldsFromTheNextStart)
{
    offerTwoRecognisers();
    controller.selectRecogniser(1);

    EXPECT_EQ(recognisers.offered.recogniser, "far");
    EXPECT_EQ(page.shown->recogniser->recognisers.selected, 1);
    Alert expected;
    expected.messageText = u"Speech recognition updated"_s;
    expected.informativeText = u"Quit and reopen Tavrin to apply your choice."_s;
    expected.buttons = {u"OK"_s};
    EXPECT_EQ(alerts.shown(), QList<Alert>{expected});

    controller.selectRecogniser(-5);
    EXPECT_EQ(recognisers.offered.recogniser, "own");
}

TEST_F(GeneralControllerTest, ALanguageIsChosenAndHoldsFromTheNextStart)
{
    offerTwoRecognisers();
    controller.selectRecogniserLanguage(1);

    EXPECT_EQ(recognisers.offered.language, "zh-CN");
    EXPECT_EQ(page.shown->recogniser->languages.selected, 1);
    EXPECT_EQ(alerts.shown().size(), 1);
}

TEST_F(GeneralControllerTest, ChoosingWhatIsChosenAsksForNothing)
{
    offerTwoRecognisers();
    controller.selectRecogniser(0);
    controller.selectRecogniserLanguage(0);

    EXPECT_TRUE(alerts.shown().isEmpty());
    EXPECT_TRUE(page.shown);
}

TEST_F(GeneralControllerTest, ARecogniserWithNothingToHearWithSaysSo)
{
    EXPECT_EQ(languagesFor({}, {}), QStringList{u"Not set"_s});
    EXPECT_FALSE(controller.content().recogniser->hasLanguages);

    EXPECT_EQ(languagesFor({u"en-US"_s}, {}), (QStringList{u"Not set"_s, u"English"_s}));
    EXPECT_TRUE(controller.content().recogniser->hasLanguages);
    controller.selectRecogniserLanguage(0);
    EXPECT_EQ(recognisers.offered.language, "");
    controller.selectRecogniserLanguage(1);
    EXPECT_EQ(recognisers.offered.language, "en-US");
}

TEST_F(GeneralControllerTest, LanguagesThatShareANameAreToldApart)
{
    EXPECT_EQ(languagesFor({u"en-US"_s, u"en-GB"_s, u"ja"_s, u"zh-CN"_s, u"zh-TW"_s}, u"ja"_s),
        (QStringList{u"English (en-US)"_s, u"English (en-GB)"_s, u"Japanese"_s, u"Mandarin"_s,
            u"Mandarin (Taiwan)"_s}));
}

TEST_F(GeneralControllerTest, AnUnknownLanguageStandsThereByItsTag)
{
    EXPECT_EQ(
        languagesFor({u"tlh"_s, u"EN-us"_s}, u"tlh"_s), (QStringList{u"tlh"_s, u"English"_s}));
}

TEST_F(GeneralControllerTest, WithoutAPageChoicesAreStoredAllTheSame)
{
    controller.setView(nullptr);
    plugInTwo();
    controller.refreshMicrophoneControls();
    controller.toggleMuteDuringRecording(true);

    EXPECT_FALSE(page.shown);
    EXPECT_TRUE(audio.availableInputDevices().isEmpty());
    EXPECT_TRUE(controller.content().mutesDuringRecording);
}

TEST(GeneralTextsTest, TheCaptionsAreThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::generalTitle, u"通用", u"一般", u"General"},
        {texts::generalSubtitle, u"选择界面语言，查看核心功能。", u"選擇介面語言，檢視核心功能。",
            u"Choose the interface language and review core capabilities."},
        {texts::interfaceLanguage, u"界面语言", u"介面語言", u"Interface language"},
        {texts::interfaceLanguageExplanation, u"决定 Tavrin 菜单与设置使用的语言。",
            u"決定 Tavrin 選單與設定使用的語言。",
            u"Controls the language used by Tavrin menus and settings."},
        {texts::reopenAfterLanguageChange, u"更改语言后请重新打开 Tavrin。",
            u"變更語言後請重新開啟 Tavrin。", u"Reopen Tavrin after changing the language."},
        {texts::translationLanguages, u"翻译语言", u"翻譯語言", u"Translation languages"},
        {texts::audio, u"音频", u"音訊", u"Audio"},
        {texts::preferredMicrophone, u"首选麦克风", u"偏好麥克風", u"Preferred microphone"},
        {texts::muteOtherAudio, u"聆听时将其他系统声音静音", u"收音時將其他系統聲音靜音",
            u"Mute other system audio while listening"},
        {texts::audioIsRestored, u"完成、取消或出错后，会恢复之前的静音与音量状态。",
            u"完成、取消或發生錯誤後，會恢復先前的靜音與音量狀態。",
            u"The previous mute and volume state is restored after finish, cancel, or error."},
        {texts::speechRecognition, u"语音识别", u"語音辨識", u"Speech recognition"},
        {texts::recogniser, u"识别引擎", u"辨識引擎", u"Recogniser"},
    });
}

TEST(SpeechLanguagesTest, EachHasANameInEachLanguageAndNoTagTwice)
{
    QStringList tags;
    for (const SpeechLanguageRow& row : speechLanguages) {
        tags.append(row.tag.toString());
        EXPECT_FALSE(
            row.name.zhHans.isEmpty() || row.name.zhHant.isEmpty() || row.name.en.isEmpty());
    }
    EXPECT_EQ(tags.removeDuplicates(), 0);
}

} // namespace
} // namespace tavrin
