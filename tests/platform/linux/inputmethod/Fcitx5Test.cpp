#include "platform/linux/inputmethod/Fcitx5.h"

#include "platform/linux/inputmethod/BusEnvironment.h"
#include "platform/linux/inputmethod/FakeBus.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

/// Stands in for the controller of Fcitx 5: one field, whose engine is switched a few questions
/// late.
class Fcitx5Test : public ::testing::Test {
protected:
    GVariant* answer(const QString& method, const QStringList& arguments)
    {
        if (method == u"Deactivate"_s)
            m_next = m_off;
        else if (method == u"Activate"_s)
            m_next = m_on;
        else if (method == u"SetCurrentIM"_s)
            m_next = arguments.value(0);
        else if (method == u"CurrentInputMethod"_s)
            return current();
        return g_variant_new("()");
    }

    GVariant* current()
    {
        if (m_engine != m_next && m_late-- <= 0)
            m_engine = m_next;
        return g_variant_new("(s)", m_engine.toUtf8().constData());
    }

    void uses(const QString& engine) { m_engine = m_next = engine; }

    QString m_engine;
    QString m_next;
    QString m_off = u"keyboard-us"_s;
    QString m_on = u"pinyin"_s;
    int m_late = 3;
    FakeBus m_bus{[this](const QString& method, const QStringList& arguments) {
        return answer(method, arguments);
    }};
    Variable m_address{"DBUS_SESSION_BUS_ADDRESS", m_bus.address()};
    Fcitx5 m_fcitx;
};

TEST_F(Fcitx5Test, TellsTheEngineInUse)
{
    uses(u"pinyin"_s);
    EXPECT_EQ(m_fcitx.engine(soon()), u"pinyin"_s);
    EXPECT_FALSE(m_fcitx.letsKeysPass(u"pinyin"_s));
}

TEST_F(Fcitx5Test, LayoutsLetKeysPassAndSoDoesNone)
{
    EXPECT_TRUE(m_fcitx.letsKeysPass(u"keyboard-de"_s));
    EXPECT_TRUE(m_fcitx.letsKeysPass(QString()));
}

TEST_F(Fcitx5Test, DeactivatingWaitsUntilItIsDone)
{
    uses(u"pinyin"_s);
    EXPECT_TRUE(m_fcitx.deactivate(soon()));
    EXPECT_EQ(m_engine, m_off);
}

TEST_F(Fcitx5Test, AnEngineThatStaysCannotBeSetAside)
{
    uses(u"pinyin"_s);
    m_off = u"pinyin"_s; // A list without a keyboard.
    EXPECT_FALSE(m_fcitx.deactivate(almostNow()));
}

TEST_F(Fcitx5Test, TheSameEngineIsActivatedAgain)
{
    uses(m_off);
    EXPECT_TRUE(m_fcitx.activate(u"pinyin"_s, soon()));
    EXPECT_EQ(m_engine, u"pinyin"_s);
}

TEST_F(Fcitx5Test, AnEngineThatIsNotTheFirstIsActivatedToo)
{
    uses(m_off);
    EXPECT_TRUE(m_fcitx.activate(u"wubi"_s, soon()));
    EXPECT_EQ(m_engine, u"wubi"_s);
}

TEST_F(Fcitx5Test, WhatTheUserHasChosenSinceStays)
{
    uses(u"wubi"_s);
    EXPECT_TRUE(m_fcitx.activate(u"pinyin"_s, soon()));
    EXPECT_EQ(m_bus.calls(), QStringList{u"CurrentInputMethod"_s});
}

TEST(AbsentFcitx5Test, IsNotThere)
{
    const Variable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    Fcitx5 fcitx;
    EXPECT_EQ(fcitx.engine(soon()), std::nullopt);
    EXPECT_FALSE(fcitx.deactivate(soon()));
    EXPECT_FALSE(fcitx.activate(u"pinyin"_s, soon()));
}

TEST(NonsensicalFcitx5Test, CountsAsNotThere)
{
    const FakeBus bus([](const QString&, const QStringList&) { return g_variant_new("(i)", 7); });
    const Variable address("DBUS_SESSION_BUS_ADDRESS", bus.address());
    Fcitx5 fcitx;
    EXPECT_EQ(fcitx.engine(soon()), std::nullopt);
    EXPECT_FALSE(fcitx.deactivate(soon()));
}

} // namespace
} // namespace tavrin::testing
