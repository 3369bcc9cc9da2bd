#include "platform/linux/inputmethod/BusConnection.h"

#include "platform/linux/audio/SilentServer.h"
#include "platform/linux/inputmethod/BusEnvironment.h"
#include "platform/linux/inputmethod/FakeBus.h"

#include <gtest/gtest.h>

#include <gio/gio.h>

namespace tavrin::testing {
namespace {

const BusCall question{"org.example", "/", "org.example", "Question"};

TEST(BusConnectionTest, AMethodIsAnswered)
{
    const FakeBus bus(
        [](const QString&, const QStringList&) { return g_variant_new("(s)", "yes"); });
    const BusConnection connection(bus.address(), soon());
    EXPECT_TRUE(connection.isOpen());
    EXPECT_TRUE(connection.call(question, soon()));
}

TEST(BusConnectionTest, AHungServiceIsGivenUp)
{
    const FakeBus bus([](const QString&, const QStringList&) { return nullptr; });
    const BusConnection connection(bus.address(), soon());
    ASSERT_TRUE(connection.isOpen());
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(connection.call(question, almostNow()));
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
}

TEST(BusConnectionTest, AHungBusIsGivenUp)
{
    const QTemporaryDir folder;
    const SilentServer server(folder.filePath(QStringLiteral("bus")));
    ASSERT_TRUE(server.listening);
    const auto before = std::chrono::steady_clock::now();
    const BusConnection connection("unix:path=" + folder.path().toUtf8() + "/bus", almostNow());
    EXPECT_FALSE(connection.isOpen());
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
    EXPECT_FALSE(connection.call(question, soon()));
}

TEST(BusConnectionTest, AddressesThatLeadNowhereAreNotOpen)
{
    for (const char* address : {"", "nonsense", "unix:path=/nowhere/bus", "unix:", ":::=,;"})
        EXPECT_FALSE(BusConnection(address, soon()).isOpen()) << address;
}

TEST(BusConnectionTest, PastTheDeadlineNothingIsAsked)
{
    FakeBus bus([](const QString&, const QStringList&) { return g_variant_new("()"); });
    const BusConnection connection(bus.address(), soon());
    EXPECT_FALSE(connection.call(question, std::chrono::steady_clock::now()));
    EXPECT_EQ(bus.calls(), QStringList());
}

} // namespace
} // namespace tavrin::testing
