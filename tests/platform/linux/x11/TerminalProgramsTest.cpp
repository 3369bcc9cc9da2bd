#include "platform/linux/x11/TerminalPrograms.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

PasteShortcut shortcutFor(const QString& identifier)
{
    return pasteShortcutOf({1, QStringLiteral("Name"), identifier, 1});
}

TEST(TerminalProgramsTest, EditorsPasteWithControlV)
{
    EXPECT_EQ(shortcutFor(QStringLiteral("org.gnome.gedit")), PasteShortcut::ControlV);
    EXPECT_EQ(shortcutFor(QStringLiteral("libreoffice-writer")), PasteShortcut::ControlV);
    EXPECT_EQ(shortcutFor(QString()), PasteShortcut::ControlV);
}

TEST(TerminalProgramsTest, TerminalsPasteWithControlShiftV)
{
    for (const auto& identifier : {QStringLiteral("org.gnome.Terminal"),
             QStringLiteral("org.kde.konsole"), QStringLiteral("xfce4-terminal"),
             QStringLiteral("Gnome-terminal"), QStringLiteral("kitty"), QStringLiteral("Alacritty"),
             QStringLiteral("org.wezfurlong.wezterm")})
        EXPECT_EQ(shortcutFor(identifier), PasteShortcut::ControlShiftV)
            << identifier.toStdString();
}

TEST(TerminalProgramsTest, TerminalsOfOldPasteThePrimarySelection)
{
    for (const auto& identifier : {QStringLiteral("XTerm"), QStringLiteral("debian-xterm"),
             QStringLiteral("UXTerm"), QStringLiteral("URxvt")})
        EXPECT_EQ(shortcutFor(identifier), PasteShortcut::ShiftInsert) << identifier.toStdString();
}

} // namespace
} // namespace tavrin::testing
