#include "platform/linux/desktop/DesktopSettings.h"

#include <QProcess>
#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// A desktop and its commands, each with its arguments after spaces.
struct DesktopRow {
    QLatin1StringView desktop;
    QLatin1StringView accessibility;
    QLatin1StringView sound;
};

constexpr std::array desktops{
    DesktopRow{
        "GNOME"_L1, "gnome-control-center universal-access"_L1, "gnome-control-center sound"_L1},
    DesktopRow{
        "Unity"_L1, "unity-control-center universal-access"_L1, "unity-control-center sound"_L1},
    DesktopRow{"KDE"_L1, "systemsettings kcm_access"_L1, "systemsettings kcm_pulseaudio"_L1},
    DesktopRow{"KDE"_L1, "systemsettings5 kcm_access"_L1, "systemsettings5 kcm_pulseaudio"_L1},
    DesktopRow{"XFCE"_L1, "xfce4-accessibility-settings"_L1, "pavucontrol"_L1},
    DesktopRow{
        "X-Cinnamon"_L1, "cinnamon-settings universal-access"_L1, "cinnamon-settings sound"_L1},
    DesktopRow{"MATE"_L1, "mate-at-properties"_L1, "mate-volume-control"_L1},
    DesktopRow{"LXQt"_L1, {}, "pavucontrol-qt"_L1},
};

constexpr std::array mixers{"pavucontrol"_L1, "pavucontrol-qt"_L1};

/// The commands of the desktop with this name.
QList<QLatin1StringView> commandsOf(const QString& desktop, SettingsPane pane)
{
    QList<QLatin1StringView> commands;
    for (const DesktopRow& row : desktops) {
        if (desktop.compare(row.desktop, Qt::CaseInsensitive) == 0)
            commands.append(pane == SettingsPane::Accessibility ? row.accessibility : row.sound);
    }
    return commands;
}

} // namespace

QList<QStringList> settingsCommands(SettingsPane pane, const QString& currentDesktop)
{
    if (pane == SettingsPane::SpeechRecognition)
        return {};
    QList<QLatin1StringView> lines;
    // "ubuntu:GNOME": the most special name first.
    for (const QString& name : currentDesktop.split(u':', Qt::SkipEmptyParts))
        lines += commandsOf(name, pane);
    if (pane == SettingsPane::Microphone)
        lines.append({mixers.begin(), mixers.end()});

    QList<QStringList> commands;
    for (const QLatin1StringView line : lines) {
        const QStringList words = QString(line).split(u' ', Qt::SkipEmptyParts);
        if (!words.isEmpty() && !commands.contains(words))
            commands.append(words);
    }
    return commands;
}

bool startFirstInstalled(const QList<QStringList>& commands, const QStringList& folders)
{
    for (const QStringList& command : commands) {
        const QString program = QStandardPaths::findExecutable(command.constFirst(), folders);
        if (!program.isEmpty())
            return QProcess::startDetached(program, command.sliced(1));
    }
    return false;
}

} // namespace tavrin
