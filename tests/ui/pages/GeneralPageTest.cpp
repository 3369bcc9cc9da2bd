#include "ui/pages/GeneralPage.h"

#include "app/pages/GeneralController.h"
#include "audio/AudioEnvironment.h"
#include "support/ScreenReader.h"
#include "support/ports/InMemoryRecogniserSettings.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "ui/controls/Card.h"
#include "ui/pages/PageFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTemporaryDir>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class GeneralPageTest : public testing::PageFixture {
protected:
    QTemporaryDir folder;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryAudioDevices devices;
    testing::InMemoryRecogniserSettings recognisers;
    AudioEnvironment audio{devices, preferences, supportIn(folder), time, [] { return false; }};
    GeneralController controller{{alerts, audio, localization, preferences, recognisers}};
    std::optional<GeneralPage> page;

    const SystemInfo& supportIn(const QTemporaryDir& support)
    {
        systemInfo.supportFolder = support.path();
        return systemInfo;
    }

    void offerRecognisers()
    {
        recognisers.offered.recognisers = {{u"own"_s, LocalizedText{u"内置", u"內建", u"Built-in"}},
            {u"far"_s, LocalizedText{u"远", u"遠", u"Far away"}}};
        recognisers.offered.recogniser = u"own"_s;
        recognisers.offered.languages = {u"en-US"_s, u"zh-CN"_s};
        recognisers.offered.language = u"en-US"_s;
    }

    void open()
    {
        page.emplace(window, controller, localization);
        page->show();
        show();
    }

    QComboBox& popup(const QString& name) const { return named<QComboBox>(name); }

    static QStringList items(const QComboBox& popup)
    {
        QStringList shown;
        for (int i = 0; i < popup.count(); ++i)
            shown.append(popup.itemText(i));
        return shown;
    }

    QList<QRect> cardFrames() const
    {
        QList<QRect> frames;
        for (const Card* const card : window.findChildren<Card*>())
            frames.append(frameIn(*card, *page));
        return frames;
    }
};

TEST_F(GeneralPageTest, WithoutAChoiceOfRecognisersTheAudioCardIsShorter)
{
    open();

    EXPECT_EQ(
        cardFrames(), (QList<QRect>{{36, 416, 538, 112}, {36, 314, 538, 88}, {36, 152, 538, 148}}));
    EXPECT_EQ(frameIn(popup(u"microphonePopup"_s), *page), QRect(200, 225, 352, 30));
    EXPECT_EQ(frameIn(named(u"muteDuringRecordingToggle"_s), *page), QRect(514, 172, 38, 22));
    EXPECT_EQ(window.findChild<QComboBox*>(u"recogniserPopup"_s), nullptr);
    EXPECT_FALSE(labels().contains(u"Speech recognition"_s));
}

TEST_F(GeneralPageTest, WithOneItHasARowMore)
{
    offerRecognisers();
    open();

    EXPECT_EQ(cardFrames().last(), QRect(36, 96, 538, 204));
    const Card& card = *window.findChildren<Card*>().last();
    EXPECT_EQ(frameIn(popup(u"microphonePopup"_s), card), QRect(164, 129, 352, 30));
    EXPECT_EQ(frameIn(named(u"muteDuringRecordingToggle"_s), card), QRect(478, 76, 38, 22));
    EXPECT_EQ(frameIn(popup(u"recogniserPopup"_s), card), QRect(164, 14, 170, 30));
    EXPECT_EQ(frameIn(popup(u"recogniserLanguagePopup"_s), card), QRect(346, 14, 170, 30));
    EXPECT_EQ(items(popup(u"recogniserPopup"_s)), (QStringList{u"Built-in"_s, u"Far away"_s}));
    EXPECT_EQ(
        items(popup(u"recogniserLanguagePopup"_s)), (QStringList{u"English"_s, u"Mandarin"_s}));
}

TEST_F(GeneralPageTest, TheTextsStandFromTopToBottom)
{
    offerRecognisers();
    open();

    EXPECT_EQ(labels(),
        (QStringList{u"General"_s, u"Choose the interface language and review core capabilities."_s,
            u"Interface language"_s, u"Controls the language used by Tavrin menus and settings."_s,
            u"Reopen Tavrin after changing the language."_s, u"Translation languages"_s,
            u"Currently supports 42 common target languages; quality may vary for less common "
            u"languages."_s,
            u"Audio"_s, u"Preferred microphone"_s, u"Mute other system audio while listening"_s,
            u"The previous mute and volume state is restored after finish, cancel, or error."_s,
            u"Speech recognition"_s}));
}

TEST_F(GeneralPageTest, TheInterfaceLanguageIsChosenWithTheKeyboard)
{
    open();
    QComboBox& languages = popup(u"interfaceLanguagePopup"_s);
    EXPECT_EQ(items(languages), (QStringList{u"简体中文"_s, u"繁體中文"_s, u"English"_s}));
    EXPECT_EQ(languages.currentIndex(), 2);

    chooseByKeyboard(languages, -1);
    EXPECT_EQ(preferences.value(keys::interfaceLanguage), QVariant(u"zh-Hant"_s));
    EXPECT_EQ(alerts.shown().size(), 1);
    EXPECT_EQ(languages.currentIndex(), 1);
}

TEST_F(GeneralPageTest, NothingIsChosenWhileTheListIsOpen)
{
    open();
    QComboBox& languages = popup(u"interfaceLanguagePopup"_s);
    languages.setFocus();
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Escape);

    EXPECT_TRUE(alerts.shown().isEmpty());
    EXPECT_EQ(languages.currentIndex(), 2);
    EXPECT_FALSE(languages.view()->isVisible());
}

TEST_F(GeneralPageTest, TheMicrophonesAreThoseOfTheMomentWhenThePageIsBuilt)
{
    devices.addMicrophone(7, u"<b>Headset</b>"_s, u"uid"_s);
    open();
    QComboBox& microphones = popup(u"microphonePopup"_s);
    EXPECT_EQ(items(microphones), (QStringList{u"Follow system default"_s, u"<b>Headset</b>"_s}));

    chooseByKeyboard(microphones, 1);
    EXPECT_EQ(preferences.value(keys::preferredMicrophoneUID), QVariant(u"uid"_s));
}

TEST_F(GeneralPageTest, TheSwitchMutesOtherSound)
{
    open();
    auto& mute = named<QCheckBox>(u"muteDuringRecordingToggle"_s);
    EXPECT_FALSE(mute.isChecked());
    mute.setFocus();
    press(Qt::Key_Space, u" "_s);

    EXPECT_EQ(preferences.value(keys::muteDuringRecording), QVariant(true));
    EXPECT_TRUE(mute.isChecked());

    ASSERT_TRUE(testing::pressByScreenReader(mute));
    EXPECT_EQ(preferences.value(keys::muteDuringRecording), QVariant(false));
    EXPECT_FALSE(mute.isChecked());
}

TEST_F(GeneralPageTest, RecogniserAndLanguageAreChosen)
{
    offerRecognisers();
    open();
    chooseByKeyboard(popup(u"recogniserPopup"_s), 1);
    EXPECT_EQ(recognisers.offered.recogniser, "far");
    chooseByKeyboard(popup(u"recogniserLanguagePopup"_s), 1);
    EXPECT_EQ(recognisers.offered.language, "zh-CN");
}

TEST_F(GeneralPageTest, ARecogniserWithoutLanguagesHasNothingToChoose)
{
    offerRecognisers();
    recognisers.offered.languages.clear();
    recognisers.offered.language.clear();
    open();

    EXPECT_FALSE(popup(u"recogniserLanguagePopup"_s).isEnabled());
    EXPECT_EQ(items(popup(u"recogniserLanguagePopup"_s)), QStringList{u"Not set"_s});
}

TEST_F(GeneralPageTest, TabReachesEverythingInReadingOrder)
{
    offerRecognisers();
    open();

    EXPECT_EQ(tabOrder(*page->firstControl()),
        (QStringList{u"Interface language"_s, u"Preferred microphone"_s,
            u"Mute other system audio while listening"_s, u"Recogniser"_s,
            u"Recognition language"_s}));
}

TEST_F(GeneralPageTest, APageThatIsGoneIsShownNothing)
{
    open();
    page.reset();
    controller.toggleMuteDuringRecording(true);
    controller.refreshMicrophoneControls();

    EXPECT_TRUE(controller.content().mutesDuringRecording);
}

} // namespace
} // namespace tavrin::ui
