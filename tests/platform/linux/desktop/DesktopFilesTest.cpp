#include "platform/linux/desktop/DesktopFiles.h"

#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

const QStringList taiwan{QStringLiteral("zh_TW"), QStringLiteral("en")};

class DesktopFilesTest : public ::testing::Test {
protected:
    void add(const QString& folder, const QString& identifier, const QByteArray& lines) const
    {
        const QString path = m_root.filePath(folder + QStringLiteral("/applications"));
        ASSERT_TRUE(QDir().mkpath(path));
        QFile file(path + u'/' + identifier + QStringLiteral(".desktop"));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + lines);
    }

    [[nodiscard]] QString identifierFor(const DesktopFiles::Window& window)
    {
        const auto file = m_files.find(window);
        return file ? file->identifier : QString();
    }

private:
    QTemporaryDir m_root;

protected:
    DesktopFiles m_files{
        {m_root.filePath(QStringLiteral("user")), m_root.filePath(QStringLiteral("system"))},
        taiwan};
};

const QString user = QStringLiteral("user");
const QString system = QStringLiteral("system");

TEST_F(DesktopFilesTest, TheWindowClassThatAFileNamesIsTheSurestSign)
{
    add(system, QStringLiteral("writer"), "Name=Writer\nStartupWMClass=libreoffice-writer\n");
    add(system, QStringLiteral("libreoffice-writer.other"), "Name=Other\n");
    EXPECT_EQ(identifierFor({QStringLiteral("libreoffice"), QStringLiteral("Libreoffice-Writer"),
                  QStringLiteral("soffice.bin")}),
        QStringLiteral("writer"));
}

TEST_F(DesktopFilesTest, FoldersReadAheadAnswerAndAreReadAgainWhenTheyChange)
{
    add(user, QStringLiteral("kate"), "Name=Kate\n");
    m_files.readAhead();
    EXPECT_EQ(identifierFor({QStringLiteral("kate"), {}, {}}), QStringLiteral("kate"));
    EXPECT_EQ(identifierFor({QStringLiteral("gedit"), {}, {}}), QString());

    add(system, QStringLiteral("gedit"), "Name=Text Editor\n");
    EXPECT_EQ(identifierFor({QStringLiteral("gedit"), {}, {}}), QStringLiteral("gedit"));
    EXPECT_EQ(identifierFor({QStringLiteral("kate"), {}, {}}), QStringLiteral("kate"));
}

TEST_F(DesktopFilesTest, TheNameOfTheFileFollowsAlsoItsLastPart)
{
    add(system, QStringLiteral("org.gnome.gedit"), "Name=Text Editor\nExec=gedit %U\n");
    add(system, QStringLiteral("kate"), "Name=Kate\n");
    EXPECT_EQ(identifierFor({QStringLiteral("gedit"), QStringLiteral("Gedit"), {}}),
        QStringLiteral("org.gnome.gedit"));
    EXPECT_EQ(identifierFor({QStringLiteral("kate"), QStringLiteral("kate"), {}}),
        QStringLiteral("kate"));
}

TEST_F(DesktopFilesTest, TheProgramOfTheProcessIsTheLastResort)
{
    add(system, QStringLiteral("chat"), "Name=Chat\nExec=env A=1 \"/opt/chat/chat-bin\" --x\n");
    EXPECT_EQ(identifierFor({QStringLiteral("x"), QStringLiteral("Y"), QStringLiteral("chat-bin")}),
        QStringLiteral("chat"));
    EXPECT_EQ(identifierFor({QStringLiteral("x"), QStringLiteral("Y"), QStringLiteral("other")}),
        QString());
    EXPECT_EQ(identifierFor({}), QString());
}

TEST_F(DesktopFilesTest, TheUsersFileHidesThatOfTheSystem)
{
    add(system, QStringLiteral("kate"), "Name=System\n");
    add(user, QStringLiteral("kate"), "Name=User\n");
    const auto file = m_files.find({QStringLiteral("kate"), {}, {}});
    ASSERT_TRUE(file);
    EXPECT_EQ(file->name, QStringLiteral("User"));
}

TEST_F(DesktopFilesTest, FilesThatMenusShowComeBeforeTheirHelpers)
{
    add(system, QStringLiteral("a-helper"), "Name=Helper\nExec=tool\nNoDisplay=true\n");
    add(system, QStringLiteral("b-main"), "Name=Main\nExec=tool\n");
    EXPECT_EQ(identifierFor({{}, {}, QStringLiteral("tool")}), QStringLiteral("b-main"));
}

TEST_F(DesktopFilesTest, AProgramThatIsInstalledWhileWeRunIsFound)
{
    add(system, QStringLiteral("one"), "Name=One\n");
    EXPECT_EQ(identifierFor({QStringLiteral("two"), {}, {}}), QString());
    add(user, QStringLiteral("two"), "Name=Two\n");
    EXPECT_EQ(identifierFor({QStringLiteral("two"), {}, {}}), QStringLiteral("two"));
}

TEST_F(DesktopFilesTest, FoldersBecomePartOfTheIdentifier)
{
    add(system, QStringLiteral("kde4/kwrite"), "Name=KWrite\nStartupWMClass=kwrite\n");
    EXPECT_EQ(identifierFor({QStringLiteral("kwrite"), {}, {}}), QStringLiteral("kde4-kwrite"));
}

TEST(DesktopFileTest, TheNameIsInTheLanguageOfTheSession)
{
    const QString text = QStringLiteral("[Desktop Entry]\nName=Editor\nName[zh_CN]=编辑器\n"
                                        "Name[zh_TW]=編輯器\n[Desktop Action New]\nName=New\n");
    const auto name = [&](const QStringList& locales) {
        return parseDesktopFile(QStringLiteral("x"), text, locales)->name;
    };
    EXPECT_EQ(name(taiwan), QStringLiteral("編輯器"));
    EXPECT_EQ(name({QStringLiteral("de_DE"), QStringLiteral("zh_CN")}), QStringLiteral("编辑器"));
    EXPECT_EQ(name({}), QStringLiteral("Editor"));
}

TEST(DesktopFileTest, WhatIsNoProgramIsNoneHere)
{
    for (const auto& text : {QString(), QStringLiteral("Name=No group\n"),
             QStringLiteral("[Desktop Entry]\nType=Link\nName=x\n"),
             QStringLiteral("[Desktop Entry]\nName=x\nHidden=true\n"),
             QStringLiteral("[Desktop Entry]\nExec=x\n"), QStringLiteral("[Desktop Entry\n=\n==")})
        EXPECT_FALSE(parseDesktopFile(QStringLiteral("x"), text, {})) << text.toStdString();
}

} // namespace
} // namespace tavrin::testing
