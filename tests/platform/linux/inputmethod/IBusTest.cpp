#include "platform/linux/inputmethod/IBus.h"

#include "platform/linux/inputmethod/BusEnvironment.h"
#include "platform/linux/inputmethod/FakeBus.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

GVariant* described(const QString& engine)
{
    GVariant* const description = g_variant_new(
        "(sa{sv}ss)", "IBusEngineDesc", nullptr, engine.toUtf8().constData(), "An engine");
    return g_variant_new("(v)", g_variant_new_variant(description));
}

/// Stands in for the daemon: it answers before the engine is in use.
class IBusTest : public ::testing::Test {
protected:
    GVariant* answer(const QString& method, const QStringList& arguments)
    {
        if (method == u"SetGlobalEngine"_s) {
            m_next = arguments.value(0);
            return g_variant_new("()");
        }
        if (m_engine != m_next && m_late-- <= 0)
            m_engine = m_next;
        return described(m_engine);
    }

    void uses(const QString& engine) { m_engine = m_next = engine; }

    QString m_engine;
    QString m_next;
    int m_late = 3;
    FakeBus m_bus{[this](const QString& method, const QStringList& arguments) {
        return answer(method, arguments);
    }};
    Variable m_address{"IBUS_ADDRESS", m_bus.address()};
    IBus m_ibus;
};

TEST_F(IBusTest, TellsTheEngineInUse)
{
    uses(u"libpinyin"_s);
    EXPECT_EQ(m_ibus.engine(soon()), u"libpinyin"_s);
    EXPECT_FALSE(m_ibus.letsKeysPass(u"libpinyin"_s));
}

TEST_F(IBusTest, LayoutsLetKeysPass)
{
    EXPECT_TRUE(m_ibus.letsKeysPass(u"xkb:de::ger"_s));
    EXPECT_FALSE(m_ibus.letsKeysPass(u"anthy"_s));
}

TEST_F(IBusTest, DeactivatingWaitsUntilItIsDone)
{
    uses(u"libpinyin"_s);
    EXPECT_TRUE(m_ibus.deactivate(soon()));
    EXPECT_TRUE(m_ibus.letsKeysPass(m_engine)) << m_engine.toStdString();
}

TEST_F(IBusTest, TheEngineComesBack)
{
    uses(u"libpinyin"_s);
    ASSERT_TRUE(m_ibus.deactivate(soon()));
    EXPECT_TRUE(m_ibus.activate(u"libpinyin"_s, soon()));
    EXPECT_EQ(m_engine, u"libpinyin"_s);
}

TEST_F(IBusTest, WhatTheUserHasChosenSinceStays)
{
    uses(u"xkb:de::ger"_s);
    EXPECT_TRUE(m_ibus.activate(u"libpinyin"_s, soon()));
    EXPECT_EQ(m_engine, u"xkb:de::ger"_s);
    EXPECT_EQ(m_bus.calls(), QStringList{u"Get"_s});
}

TEST(AbsentIBusTest, IsNotThere)
{
    const Variable address("IBUS_ADDRESS", "unix:path=/nowhere");
    IBus ibus;
    EXPECT_EQ(ibus.engine(soon()), std::nullopt);
    EXPECT_FALSE(ibus.deactivate(soon()));
    EXPECT_FALSE(ibus.activate(u"libpinyin"_s, soon()));
}

TEST(NonsensicalIBusTest, CountsAsNotThere)
{
    int turn = 0;
    const FakeBus bus([&turn](const QString&, const QStringList&) -> GVariant* {
        switch (turn++) {
        case 0:
            return g_variant_new("()");
        case 1:
            return g_variant_new("(v)", g_variant_new_string("libpinyin"));
        case 2:
            return g_variant_new("(v)", g_variant_new("(s)", "IBusEngineDesc"));
        case 3:
            return g_variant_new("(v)", g_variant_new("(sa{sv})", "IBusEngineDesc", nullptr));
        case 4:
            return g_variant_new("(v)", g_variant_new("(sa{sv}i)", "IBusEngineDesc", nullptr, 3));
        default:
            return g_variant_new("((i))", 4);
        }
    });
    const Variable address("IBUS_ADDRESS", bus.address());
    IBus ibus;
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(ibus.engine(soon()), std::nullopt) << i;
}

} // namespace
} // namespace tavrin::testing
