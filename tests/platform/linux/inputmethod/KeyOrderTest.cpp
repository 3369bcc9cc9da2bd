#include "platform/linux/inputmethod/KeyOrder.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <unistd.h>

namespace tavrin::testing {
namespace {

const QByteArray folder = "7f00-7f01 r-xp 0000 08:01 1234    /usr/lib/x86_64-linux-gnu/";
const QByteArray gtk4 = folder + "libgtk-4.so.1\n" + folder
    + "gtk-4.0/4.0.0/immodules/libim-ibus.so\n" + folder + "libc.so.6\n";
const QByteArray gtk3 = folder + "gtk-3.0/3.0.0/immodules/im-ibus.so\n";
const QByteArray other = folder + "gtk-4.0/4.0.0/immodules/libim-fcitx5.so\n";

QByteArray environment(const char* module)
{
    return QByteArray("HOME=/home/you\0", 15) + "GTK_IM_MODULE=" + module + '\0' + "LANG=C";
}

TEST(KeyOrderTest, Gtk4WithTheModuleOfIBusMixesKeys)
{
    EXPECT_TRUE(usesModuleThatMixesKeys(gtk4, environment("ibus"), true));
    EXPECT_TRUE(usesModuleThatMixesKeys(gtk4, environment("xim:ibus"), true));
}

TEST(KeyOrderTest, AMappedModuleThatIsNotChosenDoesNot)
{
    EXPECT_FALSE(usesModuleThatMixesKeys(gtk4, environment("fcitx"), true));
    EXPECT_FALSE(usesModuleThatMixesKeys(gtk4, environment(""), true));
}

TEST(KeyOrderTest, WithoutAChoiceItIsUsedWhereIBusRuns)
{
    EXPECT_TRUE(usesModuleThatMixesKeys(gtk4, "HOME=/home/you", true));
    EXPECT_FALSE(usesModuleThatMixesKeys(gtk4, "HOME=/home/you", false));
}

TEST(KeyOrderTest, QtWithTheModuleOfIBusMixesKeysWhereIBusRuns)
{
    for (const char* const version : {"qt5", "qt6"}) {
        const QByteArray contexts = folder + version + "/plugins/platforminputcontexts/";
        const QByteArray ibus = contexts + "libibusplatforminputcontextplugin.so\n";
        EXPECT_TRUE(usesModuleThatMixesKeys(ibus, environment(""), true));
        EXPECT_FALSE(usesModuleThatMixesKeys(ibus, environment(""), false));
        const QByteArray others = contexts + "libfcitx5platforminputcontextplugin.so\n" + contexts
            + "libcomposeplatforminputcontextplugin.so\n";
        EXPECT_FALSE(usesModuleThatMixesKeys(others, environment(""), true));
    }
}

TEST(KeyOrderTest, OtherModulesKeepTheOrder)
{
    EXPECT_FALSE(usesModuleThatMixesKeys(gtk3, environment("ibus"), true));
    EXPECT_FALSE(usesModuleThatMixesKeys(other, environment("ibus"), true));
    EXPECT_FALSE(usesModuleThatMixesKeys("", environment("ibus"), true));
}

TEST(KeyOrderTest, AProcessOfWhichNothingIsKnownKeepsTheOrder)
{
    EXPECT_FALSE(mixesTypedKeys(0));
    EXPECT_FALSE(mixesTypedKeys(-1));
    EXPECT_FALSE(mixesTypedKeys(::getpid()));
}

} // namespace
} // namespace tavrin::testing
