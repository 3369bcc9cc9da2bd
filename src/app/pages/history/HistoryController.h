#pragma once

#include "app/pages/DayWatch.h"
#include "app/pages/history/HistoryContent.h"
#include "app/pages/history/HistoryFind.h"
#include "app/windows/View.h"
#include "base/CallbackGuard.h"

#include <QTimeZone>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

class Clock;
class HistoryActions;
class HistoryStore;
class Localization;
class MainQueue;
class Preferences;
class Settings;
class Timer;

/// The history page: what was said and written, by days; looking for a text in it; and what the
/// user does with a record or with all of them. Main thread only.
class HistoryController {
public:
    struct Neighbours {
        HistoryActions& actions;
        const Clock& clock;
        HistoryStore& historyStore;
        const Localization& localization;
        MainQueue& mainQueue;
        const Preferences& preferences;
        const Settings& settings;
        /// Where the user's days begin; asked anew for each refresh.
        std::function<QTimeZone()> timeZone = &QTimeZone::systemTimeZone;
    };

    /// @param neighbours must outlive this object. The actions are to call refreshHistoryView().
    explicit HistoryController(Neighbours neighbours);
    ~HistoryController();

    HistoryController(const HistoryController&) = delete;
    HistoryController& operator=(const HistoryController&) = delete;

    /// The page; null while there is none.
    void setView(View<HistoryContent>* view) { m_view = view; }

    /// What it shows: the history of the last refresh.
    [[nodiscard]] HistoryContent content() const;

    /// Shows the history as it is now; when it is read, where it is not yet.
    void refreshHistoryView();

    /// From pageShown() to pageHidden() the rows follow the day: what was today becomes yesterday.
    void pageShown() { m_day.begin(); }

    void pageHidden() { m_day.end(); }

    /// The rows of the retention popup.
    [[nodiscard]] QStringList retentionTitles() const;

    void selectHistoryRetention(int index);

    /// Copies what the record shows, and says for 1.2 seconds that it was copied.
    void copyHistoryRecord(const QString& id);

    void deleteHistoryRecord(const QString& id);
    void toggleHistoryOriginal(const QString& id);

    /// Shows all of the record's text, or its beginning again.
    void toggleWholeText(const QString& id);

    void clearHistory();
    void openHistoryFolder();

    /// Shows the find field.
    void beginFind();

    /// Lists the records whose transcript or result holds @p query, whatever its case; all of them
    /// for an empty one. The first are listed at once, the others as they are found.
    void find(const QString& query);

    /// Lists everything again, without the field.
    void endFind();

private:
    void takeRecords();
    void search(bool showsWhatIsFoundSoFar);
    void searchOn();
    void takeRows(const std::optional<QList<qsizetype>>& listed);
    [[nodiscard]] HistoryRowWords rowWords() const;
    [[nodiscard]] QString storageText() const;
    [[nodiscard]] QString emptyText() const;
    void show();

    Neighbours m_neighbours;
    View<HistoryContent>* m_view = nullptr;

    bool m_isRead = false; // The records are those of the history.
    HistoryRecords m_records;
    qint64 m_fileSize = 0; // In bytes.
    HistoryRows m_rows;
    QSet<QString> m_openedRecordIDs;
    QString m_copiedRecordID;
    std::unique_ptr<Timer> m_copiedTimer; // Runs while the record says that it was copied.

    bool m_isFinding = false;
    QString m_query;
    std::optional<qsizetype> m_matches; // How many are listed; empty while everything is.
    std::unique_ptr<HistoryFind> m_search; // Null while none is under way.
    bool m_showsWhatIsFoundSoFar = false;
    qsizetype m_lookedWhenShown = 0; // Records the search had looked at when its rows were shown.
    std::optional<CallbackGuard> m_searchGuard; // Renewed with each search: the old one ends.
    DayWatch m_day;
    CallbackGuard m_guard;
};

} // namespace tavrin
