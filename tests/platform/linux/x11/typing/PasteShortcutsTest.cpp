#include "platform/linux/x11/typing/PasteShortcuts.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

/// What is pressed in the program, as a person would write it down; "primary" where that is pasted.
std::string pasteOf(
    const QString& identifier, bool isTerminal = false, const QString& title = QString())
{
    const PasteShortcut shortcut =
        pasteShortcutOf({{1, QStringLiteral("Name"), identifier, 1}, isTerminal});
    std::string keys;
    for (const KeyChord& chord : shortcut.chordsFor(title)) {
        keys += keys.empty() ? "" : " ";
        keys += chord.control ? "Ctrl+" : "";
        keys += chord.shift ? "Shift+" : "";
        keys += chord.symbol == keysyms::insert ? "Insert"
                                                : std::string(1, static_cast<char>(chord.symbol));
    }
    return shortcut.pastesPrimary ? keys + " (primary)" : keys;
}

TEST(PasteShortcutsTest, MostProgramsPasteWithControlV)
{
    for (const auto& identifier : {QStringLiteral("org.gnome.gedit"),
             QStringLiteral("libreoffice-calc"), QStringLiteral("firefox-esr"), QString()})
        EXPECT_EQ(pasteOf(identifier), "Ctrl+v") << identifier.toStdString();
}

TEST(PasteShortcutsTest, TerminalsPasteWithControlShiftV)
{
    for (const auto& identifier : {QStringLiteral("org.gnome.Terminal"),
             QStringLiteral("org.kde.konsole"), QStringLiteral("xfce4-terminal"),
             QStringLiteral("Gnome-terminal"), QStringLiteral("kitty"), QStringLiteral("Alacritty"),
             QStringLiteral("org.wezfurlong.wezterm")})
        EXPECT_EQ(pasteOf(identifier), "Ctrl+Shift+v") << identifier.toStdString();
}

TEST(PasteShortcutsTest, TerminalsOfOldPasteThePrimarySelection)
{
    for (const auto& identifier : {QStringLiteral("XTerm"), QStringLiteral("debian-xterm"),
             QStringLiteral("UXTerm"), QStringLiteral("URxvt"), QStringLiteral("mlterm")})
        EXPECT_EQ(pasteOf(identifier), "Shift+Insert (primary)") << identifier.toStdString();
}

TEST(PasteShortcutsTest, ATerminalInsideAnyProgramPastesAsTerminalsDo)
{
    for (const auto& identifier : {QStringLiteral("org.kde.kate"), QString()})
        EXPECT_EQ(pasteOf(identifier, true), "Ctrl+Shift+v") << identifier.toStdString();
}

TEST(PasteShortcutsTest, CodeEditorsPasteWhateverPartOfThemHasTheKeyboard)
{
    for (const auto& identifier : {QStringLiteral("code"), QStringLiteral("Code"),
             QStringLiteral("com.visualstudio.code"), QStringLiteral("codium")})
        EXPECT_EQ(pasteOf(identifier), "Shift+Insert (primary)") << identifier.toStdString();
}

TEST(PasteShortcutsTest, EmacsYanksTheClipboard)
{
    for (const auto& identifier : {QStringLiteral("emacs"), QStringLiteral("Emacs"),
             QStringLiteral("emacsclient"), QStringLiteral("org.gnu.emacs")})
        EXPECT_EQ(pasteOf(identifier), "Shift+Insert") << identifier.toStdString();
}

TEST(PasteShortcutsTest, VimPastesTheClipboardInEveryMode)
{
    for (const auto& identifier :
        {QStringLiteral("gvim"), QStringLiteral("Gvim"), QStringLiteral("nvim-qt")})
        EXPECT_EQ(pasteOf(identifier), "Ctrl+\\ Ctrl+o \" + g P") << identifier.toStdString();
}

TEST(PasteShortcutsTest, TheTerminalOfVimGetsNoSignalToQuit)
{
    const auto gvim = QStringLiteral("gvim");
    EXPECT_EQ(pasteOf(gvim, false, QStringLiteral("!bash [running] - VIM")), "Ctrl+w \" +");
    EXPECT_EQ(pasteOf(gvim, false, QStringLiteral("!odd [1].txt (~/notes) - VIM")),
        "Ctrl+\\ Ctrl+o \" + g P");
    EXPECT_EQ(pasteOf(gvim, false, QStringLiteral("a [b] - VIM")), "Ctrl+\\ Ctrl+o \" + g P");
    EXPECT_EQ(pasteOf(QString(), false, QStringLiteral("!bash [running] - VIM")), "Ctrl+v");
}

} // namespace
} // namespace tavrin::testing
