#include "platform/linux/speech/LinuxPermissions.h"

#include "support/sound/InMemoryAudioDevices.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

class LinuxPermissionsTest : public ::testing::Test {
protected:
    testing::InMemoryAudioDevices devices;
    LinuxPermissions permissions{devices};
};

TEST_F(LinuxPermissionsTest, TheMicrophoneIsAuthorisedWhileThereIsOne)
{
    EXPECT_EQ(permissions.microphoneStatus(), AuthorizationStatus::Denied);
    devices.addLoudspeaker(1, "speakers");
    EXPECT_EQ(permissions.microphoneStatus(), AuthorizationStatus::Denied);
    devices.addMicrophone(2, "Microphone", "mic");
    EXPECT_EQ(permissions.microphoneStatus(), AuthorizationStatus::Authorized);
}

TEST_F(LinuxPermissionsTest, NobodyHasToAllowSpeech)
{
    EXPECT_EQ(permissions.speechStatus(), AuthorizationStatus::Authorized);
}

TEST_F(LinuxPermissionsTest, RequestsAreAnsweredAtOnceWithTheStatus)
{
    std::vector<AuthorizationStatus> answers;
    permissions.requestMicrophone([&](AuthorizationStatus status) { answers.push_back(status); });
    permissions.requestSpeech([&](AuthorizationStatus status) { answers.push_back(status); });

    EXPECT_EQ(answers, (std::vector{AuthorizationStatus::Denied, AuthorizationStatus::Authorized}));
}

} // namespace
} // namespace tavrin
