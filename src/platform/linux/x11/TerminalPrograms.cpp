#include "platform/linux/x11/TerminalPrograms.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

// By the last part of the desktop file's identifier or the window class, in lower case.
constexpr std::array<QStringView, 33> terminals{u"alacritty", u"blackbox", u"console", u"contour",
    u"cool-retro-term", u"cosmicterm", u"deepin-terminal", u"foot", u"ghostty", u"gnome-terminal",
    u"gnome-terminal-server", u"guake", u"hyper", u"kgx", u"kitty", u"konsole", u"lxterminal",
    u"mate-terminal", u"ptyxis", u"qterminal", u"rio", u"sakura", u"st", u"st-256color", u"tabby",
    u"terminal", u"terminator", u"terminology", u"tilda", u"tilix", u"wezterm", u"xfce4-terminal",
    u"yakuake"};

constexpr std::array<QStringView, 10> oldTerminals{u"aterm", u"debian-uxterm", u"debian-xterm",
    u"eterm", u"mrxvt", u"rxvt", u"rxvt-unicode", u"urxvt", u"uxterm", u"xterm"};

bool contains(const auto& names, const QString& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

PasteShortcut pasteShortcutOf(const RunningApplication& application)
{
    const QString name = application.bundleIdentifier.section(u'.', -1).toLower();
    if (contains(oldTerminals, name))
        return PasteShortcut::ShiftInsert;
    return contains(terminals, name) ? PasteShortcut::ControlShiftV : PasteShortcut::ControlV;
}

} // namespace tavrin
