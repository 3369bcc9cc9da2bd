#include "platform/linux/inputmethod/IBusAddress.h"

#include "platform/linux/inputmethod/BusEnvironment.h"
#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

TEST(IBusAddressTest, TheFileIsThatOfTheDisplay)
{
    EXPECT_EQ(ibusAddressFileName("abc", ":0"), u"abc-unix-0"_s);
    EXPECT_EQ(ibusAddressFileName("abc", ":12.3"), u"abc-unix-12"_s);
    EXPECT_EQ(ibusAddressFileName("abc", "host:1.0"), u"abc-host-1"_s);
}

TEST(IBusAddressTest, WithoutADisplayOrAMachineThereIsNoFile)
{
    EXPECT_EQ(ibusAddressFileName("abc", ""), QString());
    EXPECT_EQ(ibusAddressFileName("abc", "0"), QString());
    EXPECT_EQ(ibusAddressFileName("abc", ":"), QString());
    EXPECT_EQ(ibusAddressFileName("abc", "../x:0"), QString());
    EXPECT_EQ(ibusAddressFileName("", ":0"), QString());
}

TEST(IBusAddressTest, TheAddressStandsInALineOfItsOwn)
{
    EXPECT_EQ(
        ibusAddressIn("# a comment\nIBUS_ADDRESS=unix:path=/tmp/x,guid=1\nIBUS_DAEMON_PID=2\n"),
        "unix:path=/tmp/x,guid=1");
    EXPECT_EQ(ibusAddressIn("IBUS_ADDRESS=unix:path=/tmp/x"), "unix:path=/tmp/x");
}

TEST(IBusAddressTest, AFileThatTellsNoneHasNone)
{
    EXPECT_EQ(ibusAddressIn(""), "");
    EXPECT_EQ(ibusAddressIn("IBUS_ADDRESS=\n"), "");
    EXPECT_EQ(ibusAddressIn("MY_IBUS_ADDRESS=unix:path=/tmp/x"), "");
}

TEST(IBusAddressTest, TheEnvironmentComesBeforeTheFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"address"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("IBUS_ADDRESS=unix:path=/from/file\n");
    file.close();
    const Variable address("IBUS_ADDRESS", "");
    const Variable place("IBUS_ADDRESS_FILE", path.toUtf8());
    EXPECT_EQ(ibusAddress(), "unix:path=/from/file");
    const Variable told("IBUS_ADDRESS", "unix:path=/from/environment");
    EXPECT_EQ(ibusAddress(), "unix:path=/from/environment");
}

} // namespace
} // namespace tavrin::testing
