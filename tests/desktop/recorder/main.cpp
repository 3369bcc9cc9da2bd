// A program that records as the product does, until it is killed: the sound of the desktop is
// changed then, and nobody is left to put it back.
//
// usage: tavrin-test-recorder FOLDER   (its temporary folder and its data folder)

#include "audio/AudioEnvironment.h"
#include "audio/RecordingFile.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <QFile>

#include <unistd.h>

int main(int count, char** arguments)
{
    using namespace tavrin;
    if (count != 2)
        return 2;
    testing::InMemorySystemInfo systemInfo;
    systemInfo.temporaryFolder = systemInfo.supportFolder = QFile::decodeName(arguments[1]);
    testing::InMemoryPreferences preferences;
    preferences.setValue(keys::preferredMicrophoneUID, QStringLiteral("usbmic"));
    preferences.setValue(keys::muteDuringRecording, true);

    const auto connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices(connection);
    testing::VirtualTime time;
    AudioEnvironment environment(devices, preferences, systemInfo, time, [] { return true; });
    PulseAudioRecorders recorders(connection);
    testing::InMemoryBackgroundQueue background;
    const RecordingFile file(systemInfo, background);
    background.drain();

    environment.applyPreferredMicrophoneForRecording();
    const auto recorder = recorders.createRecorder(file.audioURL(), recordingSettings);
    if (!recorder || !(*recorder)->record())
        return 1;
    environment.muteSystemAudioForRecordingIfNeeded();
    while (true)
        pause();
}
