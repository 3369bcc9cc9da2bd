#pragma once

#include "platform/Permissions.h"

namespace tavrin {

class AudioDevices;

/// Linux asks nobody for permission: speech may always be recognised, and a microphone that is
/// there may be used; without one it is "denied". Completions are called at once.
class LinuxPermissions final : public Permissions {
public:
    /// @param devices must outlive the permissions.
    explicit LinuxPermissions(AudioDevices& devices);

    [[nodiscard]] AuthorizationStatus microphoneStatus() const override;
    void requestMicrophone(Completion<AuthorizationStatus> completion) override;
    [[nodiscard]] AuthorizationStatus speechStatus() const override;
    void requestSpeech(Completion<AuthorizationStatus> completion) override;

private:
    AudioDevices& m_devices;
};

} // namespace tavrin
