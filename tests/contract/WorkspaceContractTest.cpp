#include "contract/Subject.h"
#include "platform/linux/x11/OtherProgram.h"
#include "platform/linux/x11/X11Workspace.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"

#include <unistd.h>

namespace tavrin::testing {
namespace {

/// A desktop with two programs, of which the second is in front.
class WorkspaceSubject {
public:
    virtual ~WorkspaceSubject() = default;
    [[nodiscard]] virtual Workspace& workspace() = 0;
    [[nodiscard]] virtual RunningApplication first() = 0;
    [[nodiscard]] virtual QString nameOfSecond() = 0;
    virtual void quitFirst() = 0;
};

class InMemorySubject final : public WorkspaceSubject {
public:
    InMemorySubject()
    {
        m_workspace.frontmost =
            RunningApplication{2, QStringLiteral("Second"), QStringLiteral("second"), 0};
        m_workspace.languages = {QStringLiteral("en")};
    }

    [[nodiscard]] Workspace& workspace() override { return m_workspace; }

    [[nodiscard]] RunningApplication first() override
    {
        return {1, QStringLiteral("First"), QStringLiteral("first"), 0};
    }

    [[nodiscard]] QString nameOfSecond() override { return QStringLiteral("Second"); }

    void quitFirst() override { m_workspace.activationSucceeds = false; }

private:
    InMemoryWorkspace m_workspace;
};

class X11Subject final : public WorkspaceSubject {
public:
    [[nodiscard]] Workspace& workspace() override { return m_workspace; }

    [[nodiscard]] RunningApplication first() override { return m_first.application(); }

    [[nodiscard]] QString nameOfSecond() override { return QStringLiteral("tavrin-test-editor"); }

    void quitFirst() override { m_first.close(); }

private:
    OtherProgram m_first{QStringLiteral(TAVRIN_TEST_EDITOR)};
    OtherProgram m_second{QStringLiteral(TAVRIN_TEST_EDITOR)};
    X11Workspace m_workspace;
};

class WorkspaceContractTest : public ContractTest<WorkspaceSubject> { };

INSTANTIATE_TEST_SUITE_P(Implementations, WorkspaceContractTest,
    ::testing::Values(Implementation<WorkspaceSubject>{"InMemory",
                          makeSubject<WorkspaceSubject, InMemorySubject>},
        Implementation<WorkspaceSubject>{"X11", makeSubject<WorkspaceSubject, X11Subject>}),
    implementationName);

TEST_P(WorkspaceContractTest, TheProgramInFrontIsActiveAndTheOtherIsNot)
{
    const auto front = subject().workspace().frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->localizedName, subject().nameOfSecond());
    EXPECT_TRUE(subject().workspace().isActive(*front));
    EXPECT_FALSE(subject().workspace().isActive(subject().first()));
}

TEST_P(WorkspaceContractTest, ActivatingAProgramBringsItToTheFront)
{
    EXPECT_TRUE(subject().workspace().activate(subject().first()));
    EXPECT_TRUE(subject().workspace().isActive(subject().first()));
    EXPECT_EQ(subject().workspace().frontmostApplication()->processIdentifier,
        subject().first().processIdentifier);
}

TEST_P(WorkspaceContractTest, AProgramThatHasQuitCannotBeActivated)
{
    const RunningApplication gone = subject().first();
    subject().quitFirst();
    EXPECT_FALSE(subject().workspace().activate(gone));
    EXPECT_FALSE(subject().workspace().isActive(gone));
}

TEST_P(WorkspaceContractTest, ThisProgramHasAnIdentifierOfItsOwn)
{
    EXPECT_FALSE(subject().workspace().bundleIdentifier().isEmpty());
    EXPECT_NE(subject().workspace().bundleIdentifier(),
        subject().workspace().frontmostApplication()->bundleIdentifier);
}

} // namespace
} // namespace tavrin::testing
