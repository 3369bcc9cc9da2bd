#include "platform/linux/x11/X11Windows.h"

#include "platform/linux/x11/TestClient.h"

#include <QProcess>
#include <QSysInfo>
#include <gtest/gtest.h>

#include <memory>

namespace tavrin::testing {
namespace {

/// An X server that does not know which process is at the other end of a connection.
class X11WindowsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start(QStringLiteral("Xvfb"),
            {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-extension"),
                QStringLiteral("X-Resource"), QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                QStringLiteral("-noreset")});
        ASSERT_TRUE(TestClient::eventually([this] { return m_server.canReadLine(); }));
        const QByteArray usual = qgetenv("DISPLAY");
        qputenv("DISPLAY", ':' + m_server.readLine().trimmed());
        m_client = std::make_unique<TestClient>();
        m_windows = std::make_unique<X11Windows>();
        const bool areConnected = m_client->connection().isOpen() && m_windows->isAvailable();
        qputenv("DISPLAY", usual);
        ASSERT_TRUE(areConnected);
        m_window = m_client->createHiddenWindow();
        m_client->setProperty(m_window, "_NET_WM_PID", statedProcess);
    }

    void TearDown() override
    {
        m_windows.reset();
        m_client.reset();
        m_server.terminate();
        EXPECT_TRUE(m_server.waitForFinished());
    }

    /// The process of the window once it has said that it is of @p machine.
    [[nodiscard]] qint64 processOn(const QByteArray& machine)
    {
        xcb_connection_t* server = m_client->connection().get();
        const auto set = xcb_change_property_checked(server, XCB_PROP_MODE_REPLACE, m_window,
            XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, 8, static_cast<quint32>(machine.size()),
            machine.constData());
        const XcbPointer<xcb_generic_error_t> error(xcb_request_check(server, set));
        EXPECT_FALSE(error);
        return m_windows->processOf(m_window);
    }

    static constexpr quint32 statedProcess = 4711;
    const QByteArray m_ownMachine = QSysInfo::machineHostName().toUtf8();
    std::unique_ptr<X11Windows> m_windows;
    xcb_window_t m_window = XCB_WINDOW_NONE;

private:
    QProcess m_server;
    std::unique_ptr<TestClient> m_client;
};

TEST_F(X11WindowsTest, WhatAWindowOfThisMachineSaysOfItsProcessCounts)
{
    EXPECT_EQ(processOn(m_ownMachine), statedProcess);
    EXPECT_EQ(processOn(m_ownMachine + '\0'), statedProcess); // As some programs end it.
}

TEST_F(X11WindowsTest, TheNumberOfAProcessOnAnotherMachineMeansNothingHere)
{
    EXPECT_EQ(processOn("elsewhere.example"), 0);
    EXPECT_EQ(processOn(m_ownMachine + ".elsewhere"), 0);
}

TEST_F(X11WindowsTest, AWindowThatDoesNotSayWhereItIsFromIsNobodys)
{
    EXPECT_EQ(m_windows->processOf(m_window), 0);
    EXPECT_EQ(processOn(""), 0);
}

} // namespace
} // namespace tavrin::testing
