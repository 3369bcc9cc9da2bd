#include "platform/linux/x11/typing/PasteShortcuts.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr std::array controlV{KeyChord{.symbol = keysyms::v, .control = true}};
constexpr std::array controlShiftV{KeyChord{.symbol = keysyms::v, .control = true, .shift = true}};
constexpr std::array shiftInsert{KeyChord{.symbol = keysyms::insert, .shift = true}};

// Ctrl+\ Ctrl+O leaves every mode for one command and is none itself where commands are taken
// anyway; "+gP is that command: the clipboard, with the cursor behind it. The text is never typed,
// so it cannot be taken for commands, and the mode stays as it was. (Shift+Insert pastes at the
// mouse, and only where a start-up file says so.)
constexpr std::array vimPaste{KeyChord{.symbol = keysyms::backslash, .control = true},
    KeyChord{.symbol = keysyms::o, .control = true}, KeyChord{.symbol = keysyms::quote},
    KeyChord{.symbol = keysyms::plus}, KeyChord{.symbol = keysyms::g},
    KeyChord{.symbol = keysyms::capitalP}};

// The terminal of Vim passes Ctrl+\ on, and most programs quit at it. Ctrl+W " + is its own.
constexpr std::array vimTerminalPaste{KeyChord{.symbol = keysyms::w, .control = true},
    KeyChord{.symbol = keysyms::quote}, KeyChord{.symbol = keysyms::plus}};

constexpr PasteShortcut usual{controlV};
constexpr PasteShortcut inTerminals{controlShiftV}; // To which Ctrl+V is a character.
constexpr PasteShortcut inOldTerminals{.chords = shiftInsert, .pastesPrimary = true};
// Yanks the clipboard, also where cua-mode, Viper or Evil have given Ctrl+Y another meaning.
constexpr PasteShortcut inEmacs{shiftInsert};
constexpr PasteShortcut inVim{.chords = vimPaste, .chordsInVimTerminal = vimTerminalPaste};
// Ctrl+V is a character to the terminal inside, which does not say that it has the keyboard. This
// pastes there and in every editor, the primary selection or the clipboard.
constexpr PasteShortcut inCodeEditors{.chords = shiftInsert, .pastesPrimary = true};

struct Program {
    QStringView name; // The last part of the desktop file's name or the window class, lower case.
    PasteShortcut shortcut;
};

// What is not here pastes with Ctrl+V. A program inside a terminal gets what the terminal gets.
constexpr auto programs = std::to_array<Program>({
    {u"alacritty", inTerminals},
    {u"aterm", inOldTerminals},
    {u"blackbox", inTerminals},
    {u"code", inCodeEditors},
    {u"code-insiders", inCodeEditors},
    {u"code-oss", inCodeEditors},
    {u"codium", inCodeEditors},
    {u"console", inTerminals},
    {u"contour", inTerminals},
    {u"cool-retro-term", inTerminals},
    {u"cosmicterm", inTerminals},
    {u"cursor", inCodeEditors},
    {u"debian-uxterm", inOldTerminals},
    {u"debian-xterm", inOldTerminals},
    {u"deepin-terminal", inTerminals},
    {u"emacs", inEmacs},
    {u"emacs-mail", inEmacs},
    {u"emacsclient", inEmacs},
    {u"emacsclient-mail", inEmacs},
    {u"eterm", inOldTerminals},
    {u"evim", inVim},
    {u"foot", inTerminals},
    {u"footclient", inTerminals},
    {u"ghostty", inTerminals},
    {u"gnome-terminal", inTerminals},
    {u"gnome-terminal-server", inTerminals},
    {u"guake", inTerminals},
    {u"gview", inVim},
    {u"gvim", inVim},
    {u"gvimdiff", inVim},
    {u"hyper", inTerminals},
    {u"kgx", inTerminals},
    {u"kitty", inTerminals},
    {u"koi8rxterm", inOldTerminals},
    {u"konsole", inTerminals},
    {u"lxterminal", inTerminals},
    {u"mate-terminal", inTerminals},
    {u"mlterm", inOldTerminals},
    {u"mrxvt", inOldTerminals},
    {u"neovide", inVim},
    {u"nvim-qt", inVim},
    {u"pterm", inOldTerminals},
    {u"ptyxis", inTerminals},
    {u"putty", inOldTerminals},
    {u"qterminal", inTerminals},
    {u"qterminal-drop", inTerminals},
    {u"rio", inTerminals},
    {u"roxterm", inTerminals},
    {u"rxvt", inOldTerminals},
    {u"rxvt-unicode", inOldTerminals},
    {u"sakura", inTerminals},
    {u"st", inTerminals},
    {u"st-256color", inTerminals},
    {u"tabby", inTerminals},
    {u"terminal", inTerminals},
    {u"terminator", inTerminals},
    {u"terminology", inTerminals},
    {u"tilda", inTerminals},
    {u"tilix", inTerminals},
    {u"urxvt", inOldTerminals},
    {u"uxterm", inOldTerminals},
    {u"vim", inVim},
    {u"vscodium", inCodeEditors},
    {u"wezterm", inTerminals},
    {u"windsurf", inCodeEditors},
    {u"xemacs", inEmacs},
    {u"xfce4-terminal", inTerminals},
    {u"xterm", inOldTerminals},
    {u"yakuake", inTerminals},
    {u"zutty", inOldTerminals},
});

} // namespace

std::span<const KeyChord> PasteShortcut::chordsFor(const QString& title) const
{
    // "!bash [running] - VIM"; a file's title has its folder in parentheses there.
    const bool isVimTerminal = title.startsWith(u'!') && title.contains(u"] - ");
    return isVimTerminal && !chordsInVimTerminal.empty() ? chordsInVimTerminal : chords;
}

PasteShortcut pasteShortcutOf(const PasteTarget& target)
{
    if (target.isTerminal)
        return inTerminals;
    const QString name = target.application.bundleIdentifier.section(u'.', -1).toLower();
    const auto found = std::find_if(
        programs.begin(), programs.end(), [&](const Program& row) { return row.name == name; });
    return found == programs.end() ? usual : found->shortcut;
}

} // namespace tavrin
