#include "platform/linux/desktop/DesktopSettings.h"

#include "support/QtPrinters.h"
#include "support/WaitUntil.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

QStringList commandsOn(const QString& desktop, SettingsPane pane)
{
    QStringList lines;
    for (const QStringList& command : settingsCommands(pane, desktop))
        lines.append(command.join(u' '));
    return lines;
}

TEST(SettingsCommandsTest, EachDesktopOpensItsOwnSettings)
{
    EXPECT_EQ(commandsOn(u"GNOME"_s, SettingsPane::Accessibility),
        QStringList{"gnome-control-center universal-access"});
    EXPECT_EQ(
        commandsOn(u"GNOME"_s, SettingsPane::Microphone).value(0), "gnome-control-center sound");
    EXPECT_EQ(commandsOn(u"KDE"_s, SettingsPane::Accessibility),
        (QStringList{"systemsettings kcm_access", "systemsettings5 kcm_access"}));
    EXPECT_EQ(
        commandsOn(u"KDE"_s, SettingsPane::Microphone).value(0), "systemsettings kcm_pulseaudio");
    EXPECT_EQ(commandsOn(u"XFCE"_s, SettingsPane::Accessibility),
        QStringList{"xfce4-accessibility-settings"});
    EXPECT_EQ(commandsOn(u"XFCE"_s, SettingsPane::Microphone).value(0), "pavucontrol");
}

TEST(SettingsCommandsTest, TheMostSpecialNameOfADesktopComesFirst)
{
    EXPECT_EQ(commandsOn(u"ubuntu:GNOME"_s, SettingsPane::Accessibility),
        QStringList{"gnome-control-center universal-access"});
    EXPECT_EQ(commandsOn(u"MATE:xfce"_s, SettingsPane::Accessibility),
        (QStringList{"mate-at-properties", "xfce4-accessibility-settings"}));
}

TEST(SettingsCommandsTest, WithoutAKnownDesktopAMixerServesForSound)
{
    for (const QString& unknown : {QString(), u"i3"_s, u":::"_s}) {
        EXPECT_EQ(commandsOn(unknown, SettingsPane::Microphone),
            (QStringList{"pavucontrol", "pavucontrol-qt"}));
        EXPECT_EQ(commandsOn(unknown, SettingsPane::Accessibility), QStringList());
    }
}

TEST(SettingsCommandsTest, NoDesktopHasSettingsForSpeech)
{
    for (const QString& desktop : {u"GNOME"_s, u"KDE"_s, u"XFCE"_s})
        EXPECT_EQ(commandsOn(desktop, SettingsPane::SpeechRecognition), QStringList());
}

/// A folder with programs that write down how they were called.
class StartFirstInstalledTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    void install(const QString& program)
    {
        QFile file(folder.filePath(program));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            u"#!/bin/sh\necho \"%1 $*\" > '%2.part' && mv '%2.part' '%2'\n"_s.arg(program, called())
                .toUtf8());
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] QString called() const { return folder.filePath(u"called"_s); }

    [[nodiscard]] QString call() const
    {
        if (!testing::waitUntil([this] { return QFile::exists(called()); }))
            return {};
        QFile file(called());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed()
                                              : QString();
    }
};

TEST_F(StartFirstInstalledTest, TheFirstThatIsInstalledIsStartedWithItsArguments)
{
    install(u"second"_s);
    install(u"third"_s);
    EXPECT_TRUE(startFirstInstalled(
        {{u"first"_s, u"a"_s}, {u"second"_s, u"b"_s, u"c d"_s}, {u"third"_s}}, {folder.path()}));

    EXPECT_EQ(call(), "second b c d");
}

TEST_F(StartFirstInstalledTest, WithNoneInstalledNothingIsStarted)
{
    EXPECT_FALSE(startFirstInstalled({{u"first"_s}, {u"second"_s}}, {folder.path()}));
    EXPECT_FALSE(startFirstInstalled({}, {folder.path()}));
}

} // namespace
} // namespace tavrin
