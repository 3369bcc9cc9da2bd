#include "contract/Subject.h"
#include "platform/linux/x11/OtherProgram.h"
#include "platform/linux/x11/X11Workspace.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryWorkspace.h"

#include <algorithm>
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
    [[nodiscard]] virtual qint64 processOfSecond() = 0;
    virtual void quitFirst() = 0;
};

class InMemorySubject final : public WorkspaceSubject {
public:
    InMemorySubject()
    {
        m_workspace.frontmost =
            RunningApplication{2, QStringLiteral("Second"), QStringLiteral("second"), 0};
        m_workspace.running = {*m_workspace.frontmost, first()};
        m_workspace.languages = {QStringLiteral("en")};
    }

    [[nodiscard]] Workspace& workspace() override { return m_workspace; }

    [[nodiscard]] RunningApplication first() override
    {
        return {1, QStringLiteral("First"), QStringLiteral("first"), 0};
    }

    [[nodiscard]] QString nameOfSecond() override { return QStringLiteral("Second"); }

    [[nodiscard]] qint64 processOfSecond() override { return 2; }

    void quitFirst() override
    {
        m_workspace.activationSucceeds = false;
        m_workspace.running.removeAll(first());
    }

private:
    InMemoryWorkspace m_workspace;
};

class X11Subject final : public WorkspaceSubject {
public:
    [[nodiscard]] Workspace& workspace() override { return m_workspace; }

    [[nodiscard]] RunningApplication first() override { return m_first.application(); }

    [[nodiscard]] QString nameOfSecond() override { return QStringLiteral("tavrin-test-editor"); }

    [[nodiscard]] qint64 processOfSecond() override
    {
        return m_second.application().processIdentifier;
    }

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

TEST_P(WorkspaceContractTest, ProgramsWithWindowsAreTheRunningOnes)
{
    const auto timesRunning = [this](qint64 process) {
        const QList<RunningApplication> running = subject().workspace().runningApplications();
        return std::ranges::count(running, process, &RunningApplication::processIdentifier);
    };
    const qint64 first = subject().first().processIdentifier;
    EXPECT_EQ(timesRunning(first), 1);
    EXPECT_EQ(timesRunning(subject().processOfSecond()), 1);
    EXPECT_EQ(timesRunning(::getpid()), 0);

    subject().quitFirst();
    EXPECT_EQ(timesRunning(first), 0);
    EXPECT_EQ(timesRunning(subject().processOfSecond()), 1);
}

TEST_P(WorkspaceContractTest, RunningProgramsHaveTheirNames)
{
    const QList<RunningApplication> running = subject().workspace().runningApplications();
    const auto second = std::ranges::find(
        running, subject().processOfSecond(), &RunningApplication::processIdentifier);
    ASSERT_NE(second, running.end());
    EXPECT_EQ(second->localizedName, subject().nameOfSecond());
}

TEST_P(WorkspaceContractTest, ThisProgramHasAnIdentifierOfItsOwn)
{
    EXPECT_FALSE(subject().workspace().bundleIdentifier().isEmpty());
    EXPECT_NE(subject().workspace().bundleIdentifier(),
        subject().workspace().frontmostApplication()->bundleIdentifier);
}

} // namespace
} // namespace tavrin::testing
