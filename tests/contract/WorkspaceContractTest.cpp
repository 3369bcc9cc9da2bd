#include "contract/Subject.h"
#include "platform/linux/x11/TestClient.h"
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

    void quitFirst() override { m_workspace.activationSucceeds = false; }

private:
    InMemoryWorkspace m_workspace;
};

class X11Subject final : public WorkspaceSubject {
public:
    X11Subject()
    {
        m_first = m_client.createWindow("first", "First", static_cast<quint32>(::getppid()));
        (void)m_client.createWindow("second", "Second", 1);
    }

    [[nodiscard]] Workspace& workspace() override { return m_workspace; }

    [[nodiscard]] RunningApplication first() override
    {
        return {::getppid(), QStringLiteral("First"), QStringLiteral("First"), m_first};
    }

    void quitFirst() override { m_client.destroyWindow(m_first); }

private:
    TestClient m_client;
    xcb_window_t m_first = XCB_WINDOW_NONE;
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
    EXPECT_EQ(front->localizedName, QStringLiteral("Second"));
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
