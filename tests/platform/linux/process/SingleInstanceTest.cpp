#include "platform/linux/process/SingleInstance.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <future>

namespace tavrin::testing {
namespace {

/// Two starts of the program are two connections to the bus.
QDBusConnection connection(const QString& name)
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
}

class SingleInstanceTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_bus.isConnected()) << "needs a session bus"; }

    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("first"));
        QDBusConnection::disconnectFromBus(QStringLiteral("second"));
    }

    QDBusConnection m_bus = connection(QStringLiteral("first"));
};

TEST_F(SingleInstanceTest, TheSecondStartAsksTheFirstToShowItself)
{
    SingleInstance first(m_bus);
    ASSERT_TRUE(first.isFirst());
    int shown = 0;
    first.setActivated([&] { ++shown; });

    auto answered = std::async(std::launch::async, [] {
        const SingleInstance second(connection(QStringLiteral("second")));
        return !second.isFirst() && second.activateFirst();
    });
    EXPECT_TRUE(waitUntil([&] { return shown == 1; }));
    EXPECT_TRUE(answered.get());
}

TEST_F(SingleInstanceTest, ARequestThatCameTooEarlyIsAnsweredLater)
{
    SingleInstance first(m_bus);
    first.Activate({});
    int shown = 0;
    first.setActivated([&] { ++shown; });
    EXPECT_EQ(shown, 1);
    first.setActivated([&] { ++shown; });
    EXPECT_EQ(shown, 1);
}

TEST_F(SingleInstanceTest, TheNameIsFreeAgainAfterTheFirstHasEnded)
{
    {
        const SingleInstance first(m_bus);
        ASSERT_TRUE(first.isFirst());
    }
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(QStringLiteral("first"));
    const SingleInstance next(connection(QStringLiteral("second")));
    EXPECT_TRUE(next.isFirst());
}

TEST(SingleInstanceWithoutBusTest, EveryStartIsTheFirst)
{
    const SingleInstance alone{QDBusConnection(QStringLiteral("no such connection"))};
    EXPECT_TRUE(alone.isFirst());
    EXPECT_FALSE(alone.activateFirst());
}

} // namespace
} // namespace tavrin::testing
