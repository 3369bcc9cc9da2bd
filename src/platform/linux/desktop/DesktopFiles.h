#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <future>
#include <optional>

namespace tavrin {

/// A program as its desktop file describes it.
struct DesktopFile {
    QString identifier; ///< The file's name without ".desktop": "org.gnome.gedit".
    QString name; ///< In the language of the session.
    QString windowClass; ///< `StartupWMClass`; mostly empty.
    QString program; ///< The file name of what `Exec` starts.
    bool shown = true; ///< In menus; a program has further files that are not.

    friend bool operator==(const DesktopFile&, const DesktopFile&) = default;
};

/// Reads one desktop file; empty when it describes no program. @p locales as of preferredLocales().
[[nodiscard]] std::optional<DesktopFile> parseDesktopFile(
    const QString& identifier, const QString& text, const QStringList& locales);

/// Finds the desktop file that a window belongs to. The folders are read on the first question and
/// again when something in them was added or removed; answers are remembered. Of one thread.
class DesktopFiles {
public:
    /// What a window tells of its program; any part may be empty.
    struct Window {
        QString instance; ///< The first part of WM_CLASS.
        QString className; ///< Its second part.
        QString program; ///< The file name of the process's program.
    };

    /// @p folders hold the folders "applications", the most important one first.
    DesktopFiles(const QStringList& folders, QStringList locales);

    /// Begins to read the folders on another thread; a question that comes meanwhile waits for it.
    void readAhead();

    [[nodiscard]] std::optional<DesktopFile> find(const Window& window);

private:
    /// What the folders held.
    struct Contents {
        QList<DesktopFile> files;
        QList<QDateTime> modified; ///< When each folder was, before it was read.
    };

    [[nodiscard]] static QList<QDateTime> modificationsOf(const QStringList& folders);
    [[nodiscard]] static Contents read(const QStringList& folders, const QStringList& locales);
    void refresh();
    [[nodiscard]] std::optional<DesktopFile> match(const Window& window) const;

    QStringList m_folders;
    QStringList m_locales;
    Contents m_contents;
    QHash<QString, std::optional<DesktopFile>> m_answers;
    std::future<Contents> m_reading;
};

} // namespace tavrin
