#pragma once

#include "base/CallbackGuard.h"

#include <QSet>
#include <QString>

#include <functional>

namespace tavrin {

class Alerts;
class HistoryStore;
class Pasteboard;
class Preferences;
class Workspace;

/// What the user does with the history: with one record, named by its id, or with all of it.
/// Main thread only.
class HistoryActions {
public:
    struct Neighbours {
        HistoryStore& store;
        Alerts& alerts;
        Pasteboard& pasteboard;
        Preferences& preferences;
        Workspace& workspace;
        std::function<void(const QString& name)> playSound;
        std::function<void()> refreshHistoryView; ///< Does nothing while there is no such page.
        std::function<void()> selectHistoryPage;
        std::function<void()> showMainWindow;
    };

    /// @param neighbours must outlive this object.
    explicit HistoryActions(Neighbours neighbours);

    /// Copies the text that the record shows: the transcript while it is expanded, else the result.
    /// False when there is none, or the pasteboard refused it.
    bool copyHistoryRecord(const QString& id);

    /// Copies the result of the newest record.
    void copyLatestHistory();

    void deleteHistoryRecord(const QString& id);

    /// Shows the record's transcript in place of the result, or the result again.
    void toggleHistoryOriginal(const QString& id);

    /// Keeps results as long as the entry at @p index of `retentionChoices` says.
    void selectHistoryRetention(int index);

    /// Deletes every record, if the user confirms it.
    void clearHistory();

    /// Shows the history file's folder.
    void openHistoryFolder();

    void showHistoryWindow();

    /// The records that show their transcript; forgotten when the program ends.
    [[nodiscard]] const QSet<QString>& expandedHistoryRecordIDs() const
    {
        return m_expandedHistoryRecordIDs;
    }

private:
    bool copy(const QString& text);

    Neighbours m_neighbours;
    QSet<QString> m_expandedHistoryRecordIDs;
    CallbackGuard m_guard;
};

} // namespace tavrin
