#include "platform/linux/x11/X11Workspace.h"

#include "platform/linux/x11/TestClient.h"
#include "support/QtPrinters.h"

#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <chrono>
#include <unistd.h>

namespace tavrin::testing {
namespace {

/// A desktop with one window each of two other programs.
class X11WorkspaceTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_first = m_client.createWindow("sample-editor", "Sample-editor", m_process);
        m_second = m_client.createWindow("unknown-tool", "UnknownTool", m_otherProcess);
    }

    [[nodiscard]] RunningApplication first() const
    {
        return {m_process, QStringLiteral("Editor"), QStringLiteral("editor"), m_first};
    }

    TestClient m_client; // Its windows go with it.
    const quint32 m_process = static_cast<quint32>(::getppid());
    const quint32 m_otherProcess = 1;
    xcb_window_t m_first = XCB_WINDOW_NONE;
    xcb_window_t m_second = XCB_WINDOW_NONE;
    X11Workspace m_workspace;
};

TEST_F(X11WorkspaceTest, TheFrontmostApplicationIsThatOfTheActiveWindow)
{
    const auto front = m_workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->processIdentifier, m_otherProcess);
    EXPECT_EQ(front->window, m_second);
    EXPECT_EQ(front->bundleIdentifier, QStringLiteral("UnknownTool"));
    EXPECT_EQ(front->localizedName, QStringLiteral("UnknownTool"));
    EXPECT_TRUE(m_workspace.isActive(*front));
    EXPECT_FALSE(m_workspace.isActive(first()));
}

TEST_F(X11WorkspaceTest, ActivatingBringsTheVeryWindowToTheFront)
{
    EXPECT_TRUE(m_workspace.activate(first()));
    EXPECT_EQ(m_client.activeWindow(), m_first);
    EXPECT_TRUE(m_workspace.isActive(first()));
}

TEST_F(X11WorkspaceTest, AMinimisedWindowComesBack)
{
    ASSERT_TRUE(m_workspace.activate(first()));
    m_client.minimize(m_first);
    ASSERT_NE(m_client.activeWindow(), m_first);
    EXPECT_TRUE(m_workspace.activate(first()));
    EXPECT_EQ(m_client.activeWindow(), m_first);
}

TEST_F(X11WorkspaceTest, AnotherWindowOfTheProgramTakesThePlaceOfAClosedOne)
{
    const RunningApplication application = first();
    const xcb_window_t dialog = m_client.createWindow("sample-editor", "Sample-editor", m_process);
    m_client.destroyWindow(m_first);
    EXPECT_TRUE(m_workspace.activate(application));
    EXPECT_EQ(m_client.activeWindow(), dialog);
}

TEST_F(X11WorkspaceTest, AProgramThatIsGoneCannotBeActivatedAndCostsNoTime)
{
    const RunningApplication gone{4'000'000, QString(), QString(), 0x7ffffff0};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_workspace.activate(gone));
    EXPECT_FALSE(m_workspace.isActive(gone));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

TEST_F(X11WorkspaceTest, AWindowNumberThatWasGivenOutAgainIsSomebodyElses)
{
    RunningApplication application = first();
    application.processIdentifier = 4'000'000;
    EXPECT_FALSE(m_workspace.activate(application));
    EXPECT_NE(m_client.activeWindow(), m_first);
}

TEST_F(X11WorkspaceTest, ItsOwnWindowsAreThisApplication)
{
    QWidget window;
    window.show();
    m_workspace.activateThisApplication();
    ASSERT_TRUE(TestClient::eventually(
        [&] { return m_client.activeWindow() == static_cast<xcb_window_t>(window.winId()); }));
    const auto front = m_workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->bundleIdentifier, m_workspace.bundleIdentifier());
    EXPECT_EQ(front->processIdentifier, ::getpid());
}

TEST_F(X11WorkspaceTest, WhatCannotBeOpenedIsRefused)
{
    EXPECT_FALSE(m_workspace.openUrl(QUrl()));
    EXPECT_FALSE(m_workspace.openUrl(QUrl(QStringLiteral("relative/path"))));
    EXPECT_FALSE(m_workspace.openFolder(QStringLiteral("/nowhere/at/all")));
}

} // namespace
} // namespace tavrin::testing
