#include "contract/Subject.h"
#include "platform/Permissions.h"
#include "platform/linux/speech/LinuxPermissions.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <gtest/gtest.h>

#include <optional>

namespace tavrin::testing {
namespace {

/// Permissions together with whatever they stand on.
class Subject {
public:
    virtual ~Subject() = default;
    [[nodiscard]] virtual Permissions& permissions() = 0;
    virtual void takeMicrophoneAway() = 0;
};

class InMemorySubject final : public Subject {
public:
    [[nodiscard]] Permissions& permissions() override { return m_permissions; }

    void takeMicrophoneAway() override { m_permissions.microphone = AuthorizationStatus::Denied; }

private:
    InMemoryPermissions m_permissions;
};

class LinuxSubject final : public Subject {
public:
    LinuxSubject() { m_devices.addMicrophone(1, QStringLiteral("Built-in"), QStringLiteral("1")); }

    [[nodiscard]] Permissions& permissions() override { return m_permissions; }

    void takeMicrophoneAway() override { m_devices.answers = false; }

private:
    InMemoryAudioDevices m_devices;
    LinuxPermissions m_permissions{m_devices};
};

class PermissionsContractTest : public ContractTest<Subject> {
protected:
    [[nodiscard]] std::optional<AuthorizationStatus> answerTo(
        void (Permissions::*request)(Completion<AuthorizationStatus>))
    {
        std::optional<AuthorizationStatus> answer;
        (permissions().*request)([&](AuthorizationStatus status) { answer = status; });
        return answer;
    }

    Permissions& permissions() { return subject().permissions(); }
};

INSTANTIATE_TEST_SUITE_P(Implementations, PermissionsContractTest,
    ::testing::Values(Implementation<Subject>{"InMemory", makeSubject<Subject, InMemorySubject>},
        Implementation<Subject>{"Linux", makeSubject<Subject, LinuxSubject>}),
    implementationName);

TEST_P(PermissionsContractTest, ARequestAnswersWithTheStatusOfTheMoment)
{
    EXPECT_EQ(permissions().microphoneStatus(), AuthorizationStatus::Authorized);
    EXPECT_EQ(answerTo(&Permissions::requestMicrophone), AuthorizationStatus::Authorized);
    EXPECT_EQ(permissions().speechStatus(), AuthorizationStatus::Authorized);
    EXPECT_EQ(answerTo(&Permissions::requestSpeech), AuthorizationStatus::Authorized);
}

TEST_P(PermissionsContractTest, AMicrophoneThatMayNoLongerBeUsedIsDenied)
{
    subject().takeMicrophoneAway();

    EXPECT_EQ(permissions().microphoneStatus(), AuthorizationStatus::Denied);
    EXPECT_EQ(answerTo(&Permissions::requestMicrophone), AuthorizationStatus::Denied);
    EXPECT_EQ(permissions().speechStatus(), AuthorizationStatus::Authorized);
}

} // namespace
} // namespace tavrin::testing
