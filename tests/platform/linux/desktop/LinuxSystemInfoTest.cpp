#include "platform/linux/desktop/LinuxSystemInfo.h"

#include "platform/linux/desktop/XdgFolders.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <map>

namespace tavrin::testing {
namespace {

/// Sets environment variables for one test.
class LinuxSystemInfoTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        for (const auto& [name, value] : m_before)
            qputenv(name.constData(), value);
    }

    void set(const char* name, const QByteArray& value)
    {
        m_before.try_emplace(name, qgetenv(name));
        qputenv(name, value);
    }

    LinuxSystemInfo m_info{QStringLiteral("zh-CN")};

private:
    std::map<QByteArray, QByteArray> m_before;
};

TEST_F(LinuxSystemInfoTest, RecordingsLieInTheFolderThatTheUserChose)
{
    set("TMPDIR", "/var/tmp/");
    EXPECT_EQ(m_info.temporaryDirectory(), QStringLiteral("/var/tmp"));
    set("TMPDIR", "");
    EXPECT_EQ(m_info.temporaryDirectory(), QStringLiteral("/tmp"));
    set("TMPDIR", "relative");
    EXPECT_EQ(m_info.temporaryDirectory(), QStringLiteral("/tmp"));
}

TEST_F(LinuxSystemInfoTest, ProgramDataFollowsTheXdgRules)
{
    set("XDG_DATA_HOME", "/data/");
    EXPECT_EQ(m_info.applicationSupportDirectory(), QStringLiteral("/data"));
    set("XDG_DATA_HOME", "not/absolute");
    EXPECT_EQ(
        m_info.applicationSupportDirectory(), QDir::homePath() + QStringLiteral("/.local/share"));
    set("XDG_CONFIG_HOME", "");
    EXPECT_EQ(xdg::configHome(), QDir::homePath() + QStringLiteral("/.config"));
}

TEST_F(LinuxSystemInfoTest, TheUsersDataFolderComesBeforeTheSystems)
{
    set("XDG_DATA_HOME", "/data");
    set("XDG_DATA_DIRS", "/opt/share/:relative::/data");
    EXPECT_EQ(
        xdg::dataFolders(), QStringList({QStringLiteral("/data"), QStringLiteral("/opt/share")}));
    set("XDG_DATA_DIRS", "");
    EXPECT_EQ(xdg::dataFolders(),
        QStringList({QStringLiteral("/data"), QStringLiteral("/usr/local/share"),
            QStringLiteral("/usr/share")}));
}

TEST_F(LinuxSystemInfoTest, TheMachineHasTheNameThatWasGivenForPeople)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("machine-info"));
    const auto nameIn = [&](const QByteArray& content) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return LinuxSystemInfo(QString(), path).localizedHostName();
    };

    EXPECT_EQ(nameIn("CHASSIS=laptop\nPRETTY_HOSTNAME=\"Anna 的电脑\"\nICON_NAME=x\n"),
        QStringLiteral("Anna 的电脑"));
    EXPECT_EQ(nameIn("PRETTY_HOSTNAME='Desk'"), QStringLiteral("Desk"));
    EXPECT_EQ(nameIn("PRETTY_HOSTNAME=Desk\n"), QStringLiteral("Desk"));
    EXPECT_EQ(nameIn("PRETTY_NAME=\"Linux\"\n"), QSysInfo::machineHostName());
    EXPECT_EQ(nameIn("PRETTY_HOSTNAME=\n"), QSysInfo::machineHostName());
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(LinuxSystemInfo(QString(), path).localizedHostName(), QSysInfo::machineHostName());
}

TEST_F(LinuxSystemInfoTest, KnowsThisBuildAndThisMachine)
{
    EXPECT_EQ(m_info.bundleShortVersion(), QStringLiteral(TAVRIN_VERSION));
    EXPECT_EQ(m_info.bundleVersion(), QStringLiteral(TAVRIN_BUILD));
    EXPECT_FALSE(m_info.localizedHostName().isEmpty());
    EXPECT_EQ(m_info.speechLanguage(), QStringLiteral("zh-CN"));
    set("TAVRIN_TEST_VARIABLE", "值");
    EXPECT_EQ(
        m_info.environmentVariable(QStringLiteral("TAVRIN_TEST_VARIABLE")), QStringLiteral("值"));
    EXPECT_EQ(m_info.environmentVariable(QStringLiteral("TAVRIN_TEST_UNSET")), QString());
}

} // namespace
} // namespace tavrin::testing
