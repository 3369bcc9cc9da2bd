#include "audio/AudioInputDevices.h"

#include "support/QtPrinters.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class AudioInputDevicesTest : public ::testing::Test {
protected:
    testing::InMemoryAudioDevices devices;

    QStringList listedUids()
    {
        QStringList uids;
        for (const AudioInputDevice& device : AudioInputDevices(devices))
            uids.append(device.uid);
        return uids;
    }
};

TEST_F(AudioInputDevicesTest, ADeviceIsListedWithItsIdNameAndUid)
{
    devices.addMicrophone(7, "Desk microphone", "usb-desk");

    const QList<AudioInputDevice> expected{{7, "Desk microphone", "usb-desk"}};
    EXPECT_EQ(AudioInputDevices(devices), expected);
}

TEST_F(AudioInputDevicesTest, WithoutAnyDeviceTheListIsEmpty)
{
    EXPECT_TRUE(AudioInputDevices(devices).isEmpty());
}

TEST_F(AudioInputDevicesTest, OutputsAndDevicesOfUnknownLayoutAreNotListed)
{
    devices.addLoudspeaker(1, "speakers");
    devices.addMicrophone(2, "No layout", "a").inputChannels = std::nullopt;
    devices.addMicrophone(3, "No channels", "b").inputChannels = 0;
    devices.addMicrophone(4, "Eight channels", "c").inputChannels = 8;

    EXPECT_EQ(listedUids(), QStringList{"c"});
}

TEST_F(AudioInputDevicesTest, ADeviceWhoseNameOrUidCannotBeReadIsNotListed)
{
    devices.addMicrophone(1, {}, "a").name = std::nullopt;
    devices.addMicrophone(2, "B", {}).uid = std::nullopt;
    devices.addMicrophone(3, "C", "c");

    EXPECT_EQ(listedUids(), QStringList{"c"});
}

TEST_F(AudioInputDevicesTest, NamesAreSortedWithoutRegardToCase)
{
    devices.addMicrophone(1, "webcam", "1");
    devices.addMicrophone(2, "Zoom", "2");
    devices.addMicrophone(3, "ARRAY", "3");
    devices.addMicrophone(4, "boom", "4");

    EXPECT_EQ(listedUids(), (QStringList{"3", "4", "1", "2"}));
}

TEST_F(AudioInputDevicesTest, NamesAreSortedAsTheUsersLanguageSortsThem)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    devices.addMicrophone(1, "Zoom", "1");
    devices.addMicrophone(2, QString::fromUtf8("Ähre"), "2");
    devices.addMicrophone(3, "Birne", "3");

    EXPECT_EQ(listedUids(), (QStringList{"2", "3", "1"}));
    QLocale::setDefault(before);
}

TEST_F(AudioInputDevicesTest, EmptyAndEqualNamesKeepTheSystemsOrder)
{
    devices.addMicrophone(1, "Twin", "b");
    devices.addMicrophone(2, "twin", "a");
    devices.addMicrophone(3, "", "z");
    devices.addMicrophone(4, "", "y");

    EXPECT_EQ(listedUids(), (QStringList{"z", "y", "b", "a"}));
}

TEST_F(AudioInputDevicesTest, NamesOfFourKilobytesAreKeptWhole)
{
    const QString longName = QString::fromUtf8("麦克风🎙️é").repeated(200) + QChar(0xD800);
    devices.addMicrophone(1, longName, "long");
    devices.addMicrophone(2, longName + "!", "longer");

    const QList<AudioInputDevice> listed = AudioInputDevices(devices);

    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed[0].name, longName);
    EXPECT_EQ(listed[1].name, longName + "!");
}

} // namespace
} // namespace tavrin
