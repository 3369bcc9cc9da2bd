#include "audio/AudioEnvironmentFixture.h"

namespace tavrin {
namespace {

using AudioEnvironmentTest = testing::AudioEnvironmentFixture;

TEST_F(AudioEnvironmentTest, ThePreferredMicrophoneIsTheDefaultForOneRecording)
{
    environment.applyPreferredMicrophoneForRecording();
    EXPECT_EQ(devices.defaultInput, headset);

    environment.restoreAudioEnvironment();
    EXPECT_EQ(devices.defaultInput, builtIn);
    EXPECT_EQ(devices.writes, (QStringList{"input 2", "input 1"}));
}

TEST_F(AudioEnvironmentTest, WithoutAPreferenceTheDefaultInputIsLeftAlone)
{
    devices.addMicrophone(4, "Seven", "7");
    for (const QVariant& unset : {QVariant(), QVariant(QString()), QVariant(7)}) {
        preferences.setValue(keys::preferredMicrophoneUID, unset);

        environment.applyPreferredMicrophoneForRecording();
        environment.restoreAudioEnvironment();

        EXPECT_EQ(devices.writes, QStringList());
    }
}

TEST_F(AudioEnvironmentTest, AnUnpluggedPreferredMicrophoneIsPassedOver)
{
    preferences.setValue(keys::preferredMicrophoneUID, "unplugged");

    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, APreferredMicrophoneWithoutAnIdIsPassedOver)
{
    devices.device(headset).id = 0;

    environment.applyPreferredMicrophoneForRecording();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, AnUnknownDefaultInputIsNotReplaced)
{
    devices.defaultInput = std::nullopt;

    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, APreferredMicrophoneThatIsTheDefaultAlreadyChangesNothing)
{
    devices.defaultInput = headset;

    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, OfTwoMicrophonesWithTheSameUidTheFirstByNameIsUsed)
{
    devices.addMicrophone(4, "Another headset", "usb-headset");

    environment.applyPreferredMicrophoneForRecording();

    EXPECT_EQ(devices.defaultInput, AudioDeviceId{4});
}

TEST_F(AudioEnvironmentTest, WithoutADefaultInputBeforeThereIsNothingToPutBack)
{
    devices.defaultInput = AudioDeviceId{0};

    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList{"input 2"});
}

TEST_F(AudioEnvironmentTest, ASwitchThatHasNotShownByTheEndIsTakenBackAllTheSame)
{
    devices.switchesShow = false;
    environment.applyPreferredMicrophoneForRecording();
    EXPECT_EQ(devices.defaultInput, builtIn);

    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, (QStringList{"input 2", "input 1"}));
}

TEST_F(AudioEnvironmentTest, AFailedSwitchIsNotRestored)
{
    devices.switchingSucceeds = false;

    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList{"input 2"});
}

TEST_F(AudioEnvironmentTest, AnInputChosenDuringTheRecordingIsKept)
{
    devices.addMicrophone(4, "Chosen", "chosen");
    environment.applyPreferredMicrophoneForRecording();

    devices.defaultInput = 4;
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.defaultInput, AudioDeviceId{4});
    EXPECT_EQ(devices.writes, QStringList{"input 2"});
}

TEST_F(AudioEnvironmentTest, OutputIsMutedAndUnmuted)
{
    environment.muteSystemAudioForRecordingIfNeeded();
    EXPECT_EQ(output().mute, 1U);

    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(output().volume, 1.0F);
    EXPECT_EQ(devices.writes, (QStringList{"mute 3 1", "mute 3 0"}));
}

TEST_F(AudioEnvironmentTest, OutputThatWasMutedBeforeStaysMuted)
{
    output().mute = 1;

    environment.muteSystemAudioForRecordingIfNeeded();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(output().mute, 1U);
}

TEST_F(AudioEnvironmentTest, OutputIsNotTouchedUnlessTheUserAskedForIt)
{
    preferences.remove(keys::muteDuringRecording);

    environment.muteSystemAudioForRecordingIfNeeded();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, AMuteThatComesAfterTheRecordingEndedDoesNothing)
{
    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();
    devices.writes.clear();
    recording = false;

    environment.muteSystemAudioForRecordingIfNeeded();

    EXPECT_EQ(devices.writes, QStringList());
    EXPECT_EQ(output().mute, 0U);
}

TEST_F(AudioEnvironmentTest, ASecondMuteDuringACaptureDoesNothing)
{
    environment.muteSystemAudioForRecordingIfNeeded();

    environment.muteSystemAudioForRecordingIfNeeded();

    EXPECT_EQ(devices.writes, QStringList{"mute 3 1"});
    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().mute, 0U);
}

TEST_F(AudioEnvironmentTest, ASecondMuteDuringAVolumeCaptureDoesNothing)
{
    output().muteSettable = false;
    environment.muteSystemAudioForRecordingIfNeeded();

    environment.muteSystemAudioForRecordingIfNeeded();

    EXPECT_EQ(devices.writes, QStringList{"volume 3 0"});
}

TEST_F(AudioEnvironmentTest, WithoutADefaultOutputNothingIsSilenced)
{
    for (const std::optional<AudioDeviceId> none :
        {std::optional<AudioDeviceId>(), std::optional<AudioDeviceId>(0)}) {
        devices.defaultOutput = none;

        environment.muteSystemAudioForRecordingIfNeeded();
        environment.restoreAudioEnvironment();

        EXPECT_EQ(devices.writes, QStringList());
    }
}

TEST_F(AudioEnvironmentTest, OutputThatTheUserUnmutedIsNotTouchedAgain)
{
    output().mute = 1;
    environment.muteSystemAudioForRecordingIfNeeded();

    output().mute = 0;
    environment.restoreAudioEnvironment();

    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(devices.writes, QStringList{"mute 3 1"});
}

TEST_F(AudioEnvironmentTest, TheDeviceThatWasMutedIsUnmutedEvenWhenAnotherIsDefaultByThen)
{
    devices.addLoudspeaker(5, "usb-speakers").mute = 1;
    environment.muteSystemAudioForRecordingIfNeeded();

    devices.defaultOutput = 5;
    environment.restoreAudioEnvironment();

    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(devices.device(5).mute, 1U);
}

TEST_F(AudioEnvironmentTest, OutputWithoutASettableMuteIsSilencedByItsVolume)
{
    output().muteSettable = false;
    output().volume = 0.6F;

    environment.muteSystemAudioForRecordingIfNeeded();
    EXPECT_EQ(output().volume, 0.0F);

    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().volume, 0.6F);
    EXPECT_EQ(output().mute, 0U);
}

TEST_F(AudioEnvironmentTest, OutputWithoutAMuteIsSilencedByItsVolume)
{
    output().mute = std::nullopt;

    environment.muteSystemAudioForRecordingIfNeeded();

    EXPECT_EQ(devices.writes, QStringList{"volume 3 0"});
}

TEST_F(AudioEnvironmentTest, AVolumeStillNearZeroIsPutBackAndOneRaisedMeanwhileIsKept)
{
    output().mute = std::nullopt;
    output().volume = 0.6F;

    environment.muteSystemAudioForRecordingIfNeeded();
    output().volume = 0.001F;
    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().volume, 0.6F);

    environment.muteSystemAudioForRecordingIfNeeded();
    output().volume = 0.0011F;
    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().volume, 0.0011F);
}

TEST_F(AudioEnvironmentTest, AVolumeThatCanNoLongerBeReadIsNotWritten)
{
    output().mute = std::nullopt;
    environment.muteSystemAudioForRecordingIfNeeded();

    output().volume = std::nullopt;
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList{"volume 3 0"});
}

TEST_F(AudioEnvironmentTest, WhenTheMuteWriteFailsNothingIsCapturedAndVolumeIsNotTried)
{
    output().muteWritesSucceed = false;

    environment.muteSystemAudioForRecordingIfNeeded();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList{"mute 3 1"});
}

TEST_F(AudioEnvironmentTest, WhenTheVolumeWriteFailsNothingIsCaptured)
{
    output().mute = std::nullopt;
    output().volumeWritesSucceed = false;

    environment.muteSystemAudioForRecordingIfNeeded();
    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList{"volume 3 0"});
}

TEST_F(AudioEnvironmentTest, OutputWithNeitherMuteNorVolumeIsLeftAlone)
{
    output().mute = std::nullopt;
    output().volume = 0.5F;
    output().volumeSettable = false;

    environment.muteSystemAudioForRecordingIfNeeded();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, OutputIsRestoredBeforeInput)
{
    environment.applyPreferredMicrophoneForRecording();
    environment.muteSystemAudioForRecordingIfNeeded();
    devices.writes.clear();

    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
}

TEST_F(AudioEnvironmentTest, AFailedRestoreIsNotRepeated)
{
    environment.applyPreferredMicrophoneForRecording();
    environment.muteSystemAudioForRecordingIfNeeded();
    devices.switchingSucceeds = false;
    output().muteWritesSucceed = false;
    environment.restoreAudioEnvironment();
    devices.writes.clear();

    environment.restoreAudioEnvironment();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(AudioEnvironmentTest, TheEnvironmentServesOneRecordingAfterAnother)
{
    for (int session = 0; session < 3; ++session) {
        environment.applyPreferredMicrophoneForRecording();
        environment.muteSystemAudioForRecordingIfNeeded();
        EXPECT_EQ(devices.defaultInput, headset);
        EXPECT_EQ(output().mute, 1U);

        environment.restoreAudioEnvironment();
        EXPECT_EQ(devices.defaultInput, builtIn);
        EXPECT_EQ(output().mute, 0U);
    }
}

} // namespace
} // namespace tavrin
