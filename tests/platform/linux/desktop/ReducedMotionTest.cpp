#include "platform/linux/desktop/ReducedMotion.h"

#include "support/WaitUntil.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

/// Plays the portal of a desktop on the session bus.
class Portal final : public QDBusVirtualObject {
public:
    Portal()
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this));
        EXPECT_TRUE(m_bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    ~Portal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;

    QVariant animations = true; ///< What it answers, packed once.
    int questions = 0;

    void announce(const QString& group, const QString& key, bool value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
            u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QVariantList asked{u"org.gnome.desktop.interface"_s, u"enable-animations"_s};
        if (message.member() != "Read"_L1 || message.arguments() != asked)
            return false;
        ++questions;
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(animations))));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
};

TEST(ReducedMotionTest, TheAnswerOfTheDesktopHolds)
{
    Portal portal;
    portal.animations = false;
    ReducedMotion motion;
    EXPECT_FALSE(motion.isPreferred());
    motion.follow();
    EXPECT_TRUE(waitUntil([&] { return motion.isPreferred(); }));
}

TEST(ReducedMotionTest, OlderPortalsPackTheAnswerTwice)
{
    Portal portal;
    portal.animations = QVariant::fromValue(QDBusVariant(false));
    ReducedMotion motion;
    motion.follow();
    EXPECT_TRUE(waitUntil([&] { return motion.isPreferred(); }));
}

TEST(ReducedMotionTest, AChangeIsFollowedAndOtherSettingsAreNot)
{
    Portal portal;
    ReducedMotion motion;
    motion.follow();
    ASSERT_TRUE(waitUntil([&] { return portal.questions == 1; }));

    portal.announce(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, false);
    EXPECT_TRUE(waitUntil([&] { return motion.isPreferred(); }));
    portal.announce(u"org.gnome.desktop.interface"_s, u"cursor-blink"_s, true);
    portal.announce(u"org.freedesktop.appearance"_s, u"enable-animations"_s, true);
    EXPECT_FALSE(waitUntil([&] { return !motion.isPreferred(); }, Seconds{0.3}));
    portal.announce(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, true);
    EXPECT_TRUE(waitUntil([&] { return !motion.isPreferred(); }));
}

TEST(ReducedMotionTest, WithoutAPortalMotionStays)
{
    ReducedMotion motion;
    motion.follow();
    EXPECT_FALSE(waitUntil([&] { return motion.isPreferred(); }, Seconds{0.3}));
}

} // namespace
} // namespace tavrin::testing
