#pragma once

#include "platform/Permissions.h"

namespace tavrin {

class AudioDevices;
class FileSpeechRecognizer;

/// Linux asks nobody for permission: what is there may be used, and what is not there is "denied".
/// Completions are called at once.
class LinuxPermissions final : public Permissions {
public:
    /// Both must outlive the permissions.
    LinuxPermissions(AudioDevices& devices, const FileSpeechRecognizer& recognizer);

    [[nodiscard]] AuthorizationStatus microphoneStatus() const override;
    void requestMicrophone(Completion<AuthorizationStatus> completion) override;
    [[nodiscard]] AuthorizationStatus speechStatus() const override;
    void requestSpeech(Completion<AuthorizationStatus> completion) override;

private:
    AudioDevices& m_devices;
    const FileSpeechRecognizer& m_recognizer;
};

} // namespace tavrin
