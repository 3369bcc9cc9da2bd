#include "platform/linux/x11/X11Workspace.h"

#include "platform/linux/x11/OtherProgram.h"
#include "platform/linux/x11/TestClient.h"
#include "support/QtPrinters.h"

#include <QCoreApplication>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <unistd.h>

namespace tavrin::testing {
namespace {

/// A desktop with one window each of two other programs, the second one in front.
class X11WorkspaceTest : public ::testing::Test {
protected:
    TestClient m_client;
    OtherProgram m_first{QStringLiteral(TAVRIN_TEST_EDITOR)};
    OtherProgram m_second{QStringLiteral(TAVRIN_TEST_EDITOR)};
    X11Workspace m_workspace;
};

TEST_F(X11WorkspaceTest, TheFrontmostApplicationIsThatOfTheActiveWindow)
{
    const auto front = m_workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->processIdentifier, m_second.application().processIdentifier);
    EXPECT_EQ(front->window, m_second.window());
    EXPECT_EQ(front->bundleIdentifier, QStringLiteral("tavrin-test-editor"));
    EXPECT_EQ(front->localizedName, QStringLiteral("tavrin-test-editor"));
    EXPECT_TRUE(m_workspace.isActive(*front));
    EXPECT_FALSE(m_workspace.isActive(m_first.application()));
}

TEST_F(X11WorkspaceTest, TheProcessIsNotTheOneThatAWindowOnlyClaims)
{
    // As a program does that has been put into a process namespace of its own.
    m_client.setProperty(m_second.window(), "_NET_WM_PID", 2);
    const auto front = m_workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->processIdentifier, m_second.application().processIdentifier);
    EXPECT_TRUE(m_workspace.isActive(m_second.application()));
}

TEST_F(X11WorkspaceTest, ActivatingBringsTheVeryWindowToTheFront)
{
    EXPECT_TRUE(m_workspace.activate(m_first.application()));
    EXPECT_EQ(m_client.activeWindow(), m_first.window());
    EXPECT_TRUE(m_workspace.isActive(m_first.application()));
}

TEST_F(X11WorkspaceTest, AnotherWindowOfTheSameProgramIsNotTakenForIt)
{
    QWidget first;
    first.show();
    ASSERT_TRUE(TestClient::eventually([&] { return m_client.activeWindow() == first.winId(); }));
    const auto application = m_workspace.frontmostApplication();
    ASSERT_TRUE(application);
    QWidget second;
    second.show();
    ASSERT_TRUE(TestClient::eventually([&] { return m_client.activeWindow() == second.winId(); }));
    EXPECT_TRUE(m_workspace.isActive(*application));
    EXPECT_TRUE(m_workspace.activate(*application));
    EXPECT_EQ(m_client.activeWindow(), first.winId());
}

TEST_F(X11WorkspaceTest, AMinimisedWindowComesBack)
{
    ASSERT_TRUE(m_workspace.activate(m_first.application()));
    m_client.minimize(m_first.window());
    ASSERT_NE(m_client.activeWindow(), m_first.window());
    EXPECT_TRUE(m_workspace.activate(m_first.application()));
    EXPECT_EQ(m_client.activeWindow(), m_first.window());
}

TEST_F(X11WorkspaceTest, NoOtherWindowOfTheProgramTakesThePlaceOfAClosedOne)
{
    auto closed = std::make_unique<QWidget>();
    closed->show();
    ASSERT_TRUE(TestClient::eventually([&] { return m_client.activeWindow() == closed->winId(); }));
    const auto application = m_workspace.frontmostApplication();
    ASSERT_TRUE(application);
    QWidget other;
    other.show();
    ASSERT_TRUE(TestClient::eventually([&] { return m_client.activeWindow() == other.winId(); }));
    closed.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(m_workspace.activate(*application));
}

TEST_F(X11WorkspaceTest, AProgramWithoutAKnownWindowComesBackWithItsTopmostOne)
{
    RunningApplication application = m_first.application();
    application.window = 0;
    EXPECT_TRUE(m_workspace.activate(application));
    EXPECT_EQ(m_client.activeWindow(), m_first.window());
}

TEST_F(X11WorkspaceTest, AProgramThatIsGoneCannotBeActivatedAndCostsNoTime)
{
    const RunningApplication gone{4'000'000, QString(), QString(), 0x7ffffff0};
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) { // Of which each would wait for almost half a second.
        EXPECT_FALSE(m_workspace.activate(gone));
        EXPECT_FALSE(m_workspace.isActive(gone));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_F(X11WorkspaceTest, AWindowNumberThatWasGivenOutAgainIsSomebodyElses)
{
    RunningApplication application = m_first.application();
    application.processIdentifier = 4'000'000;
    EXPECT_FALSE(m_workspace.activate(application));
    EXPECT_NE(m_client.activeWindow(), m_first.window());
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

TEST_F(X11WorkspaceTest, ItReachesEveryProgramUnlessTheSessionIsAWaylandOne)
{
    for (const char* variable : {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE"}) {
        const QByteArray before = qgetenv(variable);
        qunsetenv(variable);
        EXPECT_TRUE(X11Workspace().reachesEveryProgram());
        qputenv(variable, "wayland");
        EXPECT_FALSE(X11Workspace().reachesEveryProgram()) << variable;
        qputenv(variable, before);
    }
}

TEST_F(X11WorkspaceTest, WhatCannotBeOpenedIsRefused)
{
    EXPECT_FALSE(m_workspace.openUrl(QUrl()));
    EXPECT_FALSE(m_workspace.openUrl(QUrl(QStringLiteral("relative/path"))));
    EXPECT_FALSE(m_workspace.openFolder(QStringLiteral("/nowhere/at/all")));
}

TEST_F(X11WorkspaceTest, TheLocalesOfTheSystemAreLanguageTagsToTheProgram)
{
    const QByteArray before = qgetenv("LANGUAGE");
    const QByteArray all = qgetenv("LC_ALL");
    qputenv("LC_ALL", "zh_TW.UTF-8");
    qputenv("LANGUAGE", "zh_TW:zh_HK:zh_CN:de_DE");
    EXPECT_EQ(m_workspace.preferredLanguages(),
        QStringList({QStringLiteral("zh-Hant-TW"), QStringLiteral("zh-Hant-HK"),
            QStringLiteral("zh-Hans-CN"), QStringLiteral("de-DE")}));
    qputenv("LANGUAGE", before);
    qputenv("LC_ALL", all);
}

} // namespace
} // namespace tavrin::testing
