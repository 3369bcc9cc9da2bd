#include "audio/AudioEnvironment.h"
#include "audio/AudioTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>

namespace tavrin {
namespace {

using Item = MicrophoneContent::Item;

QString inEnglish(const LocalizedText& text)
{
    return text.en.toString();
}

class MicrophoneContentTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::InMemoryAudioDevices devices;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::VirtualTime time;
    AudioEnvironment environment{devices, preferences, systemInfo, time, [] { return false; }};

    MicrophoneContent refresh() { return environment.refreshMicrophoneControls(inEnglish); }
};

TEST_F(MicrophoneContentTest, TheSystemsDefaultComesFirstThenEveryDevice)
{
    devices.addMicrophone(1, "Webcam", "usb-webcam");
    devices.addMicrophone(2, "Array", "pci-array");

    const QList<Item> expected{
        {"Follow system default", ""}, {"Array", "pci-array"}, {"Webcam", "usb-webcam"}};
    EXPECT_EQ(refresh().items, expected);
}

TEST_F(MicrophoneContentTest, TheFirstTitleHasThreeForms)
{
    EXPECT_EQ(texts::followSystemDefault.zhHans, u"跟随系统默认");
    EXPECT_EQ(texts::followSystemDefault.zhHant, u"跟隨系統預設");
    EXPECT_EQ(texts::followSystemDefault.en, u"Follow system default");
}

TEST_F(MicrophoneContentTest, WithoutDevicesOnlyTheSystemsDefaultIsThereAndSelected)
{
    preferences.setValue(keys::preferredMicrophoneUID, "usb-webcam");

    const MicrophoneContent controls = refresh();

    EXPECT_EQ(controls.items, QList<Item>({{"Follow system default", ""}}));
    EXPECT_EQ(controls.selected, 0);
}

TEST_F(MicrophoneContentTest, ASilentSoundServerLeavesOnlyTheSystemsDefaultAndThePreference)
{
    devices.addMicrophone(1, "Webcam", "usb-webcam");
    preferences.setValue(keys::preferredMicrophoneUID, "usb-webcam");
    ASSERT_EQ(refresh().selected, 1);
    devices.answers = false;

    const MicrophoneContent controls = refresh();

    EXPECT_EQ(controls.items, QList<Item>({{"Follow system default", ""}}));
    EXPECT_EQ(controls.selected, 0);
    EXPECT_EQ(preferences.value(keys::preferredMicrophoneUID), QVariant("usb-webcam"));
}

TEST_F(MicrophoneContentTest, ThePreferredMicrophoneIsSelected)
{
    devices.addMicrophone(1, "A", "a");
    devices.addMicrophone(2, "B", "b");
    preferences.setValue(keys::preferredMicrophoneUID, "b");

    EXPECT_EQ(refresh().selected, 2);
}

TEST_F(MicrophoneContentTest, WithoutAPreferenceTheSystemsDefaultIsSelected)
{
    devices.addMicrophone(1, "A", "a");

    EXPECT_EQ(refresh().selected, 0);
}

TEST_F(MicrophoneContentTest, APreferredMicrophoneThatIsAwaySelectsTheSystemsDefault)
{
    devices.addMicrophone(1, "A", "a");
    preferences.setValue(keys::preferredMicrophoneUID, "unplugged");

    EXPECT_EQ(refresh().selected, 0);
}

TEST_F(MicrophoneContentTest, OfTwoDevicesWithTheSameUidTheLaterIsSelected)
{
    devices.addMicrophone(1, "Second by name", "twin");
    devices.addMicrophone(2, "First by name", "twin");
    preferences.setValue(keys::preferredMicrophoneUID, "twin");

    const MicrophoneContent controls = refresh();

    EXPECT_EQ(controls.items[controls.selected].title, "Second by name");
}

TEST_F(MicrophoneContentTest, EachRefreshReadsTheDevicesAnewAndRemembersThem)
{
    refresh();
    devices.addMicrophone(1, "A", "a");
    EXPECT_TRUE(environment.availableInputDevices().isEmpty());

    refresh();

    EXPECT_EQ(environment.availableInputDevices(), QList<AudioInputDevice>({{1, "A", "a"}}));
}

TEST_F(MicrophoneContentTest, ChoosingAMicrophoneStoresItsUidAtOnce)
{
    environment.selectPreferredMicrophone("usb-webcam");

    EXPECT_EQ(preferences.value(keys::preferredMicrophoneUID), QVariant("usb-webcam"));
    EXPECT_EQ(preferences.flushed(keys::preferredMicrophoneUID), QVariant("usb-webcam"));
    EXPECT_EQ(preferences.synchronizations(), 1);
}

TEST_F(MicrophoneContentTest, ChoosingTheSystemsDefaultRemovesTheStoredUid)
{
    environment.selectPreferredMicrophone("usb-webcam");

    environment.selectPreferredMicrophone({});

    EXPECT_FALSE(preferences.value(keys::preferredMicrophoneUID).isValid());
    EXPECT_FALSE(preferences.flushed(keys::preferredMicrophoneUID).isValid());
    EXPECT_EQ(preferences.synchronizations(), 2);
}

TEST_F(MicrophoneContentTest, TheMuteSwitchIsOffUntilItIsTurnedOn)
{
    EXPECT_FALSE(MuteDuringRecordingEnabled(preferences));

    environment.toggleMuteDuringRecording(true);
    EXPECT_TRUE(MuteDuringRecordingEnabled(preferences));
    EXPECT_EQ(preferences.flushed(keys::muteDuringRecording), QVariant(true));
    EXPECT_EQ(preferences.synchronizations(), 1);

    environment.toggleMuteDuringRecording(false);
    EXPECT_FALSE(MuteDuringRecordingEnabled(preferences));
    EXPECT_EQ(preferences.value(keys::muteDuringRecording), QVariant(false));
    EXPECT_EQ(preferences.synchronizations(), 2);
}

TEST_F(MicrophoneContentTest, AMuteSwitchOfAnotherTypeIsOff)
{
    for (const QVariant& wrong : {QVariant("no"), QVariant("true"), QVariant(""),
             QVariant(QVariantList{true}), QVariant(std::nan(""))}) {
        preferences.setValue(keys::muteDuringRecording, wrong);
        EXPECT_FALSE(MuteDuringRecordingEnabled(preferences)) << wrong.toString().toStdString();
    }
}

TEST_F(MicrophoneContentTest, AMuteSwitchMayBeStoredAsANumber)
{
    preferences.setValue(keys::muteDuringRecording, 1);
    EXPECT_TRUE(MuteDuringRecordingEnabled(preferences));

    preferences.setValue(keys::muteDuringRecording, 0.0);
    EXPECT_FALSE(MuteDuringRecordingEnabled(preferences));
}

TEST_F(MicrophoneContentTest, AMicrophoneStoredInAnotherTypeSelectsTheSystemsDefault)
{
    devices.addMicrophone(1, "A", "7");
    preferences.setValue(keys::preferredMicrophoneUID, 7);

    EXPECT_EQ(refresh().selected, 0);
}

} // namespace
} // namespace tavrin
