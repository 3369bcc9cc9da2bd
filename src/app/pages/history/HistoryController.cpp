#include "app/pages/history/HistoryController.h"

#include "app/pages/history/HistoryTexts.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "history/HistoryActions.h"
#include "history/HistoryRetention.h"
#include "history/HistoryStore.h"
#include "platform/Clock.h"
#include "platform/DesktopTexts.h"
#include "platform/MainQueue.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds copiedDuration = 1200ms;
// What is looked through before the queue has its turn: a few milliseconds.
constexpr qsizetype bytesAtATime = qsizetype(1) << 20;

} // namespace

HistoryController::HistoryController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
    , m_day({m_neighbours.mainQueue, m_neighbours.clock, m_neighbours.timeZone,
          [this] { refreshHistoryView(); }})
{
}

HistoryController::~HistoryController() = default;

HistoryContent HistoryController::content() const
{
    const auto& choices = retentionChoices;
    const QString stored = valueOf(m_neighbours.preferences, keys::historyRetention);
    const auto chosen = std::ranges::find(choices, stored, &RetentionChoice::value);
    HistoryContent content;
    content.historyStorageLabel = m_isRead ? storageText() : QString();
    content.historyRetentionPopup =
        chosen == choices.end() ? 0 : static_cast<int>(chosen - choices.begin());
    content.rows = m_rows;
    content.emptyText = emptyText();
    content.openedRecordIDs = m_openedRecordIDs;
    content.copiedRecordID = m_copiedRecordID;
    content.isFinding = m_isFinding;
    content.query = m_query;
    if (m_matches)
        content.matchCount =
            m_neighbours.localization.LT(texts::findMatches, QString::number(*m_matches));
    return content;
}

void HistoryController::refreshHistoryView()
{
    if (!m_view)
        return;
    m_neighbours.historyStore.whenRead(m_guard.bind([this] {
        if (m_view)
            takeRecords();
    }));
}

void HistoryController::takeRecords()
{
    m_records = m_neighbours.historyStore.historyRecords();
    m_fileSize = m_neighbours.historyStore.historyFileSize();
    m_isRead = true;
    search(false); // What is listed stays until what is to be listed is known.
}

QStringList HistoryController::retentionTitles() const
{
    QStringList titles;
    for (const RetentionChoice& choice : retentionChoices)
        titles.append(m_neighbours.localization.LT(choice.label));
    return titles;
}

void HistoryController::selectHistoryRetention(int index)
{
    m_neighbours.actions.selectHistoryRetention(index);
}

void HistoryController::copyHistoryRecord(const QString& id)
{
    if (!m_neighbours.actions.copyHistoryRecord(id))
        return;
    m_copiedRecordID = id;
    m_copiedTimer = m_neighbours.mainQueue.after(copiedDuration, [this] {
        m_copiedRecordID.clear();
        show();
    });
    show();
}

void HistoryController::deleteHistoryRecord(const QString& id)
{
    m_openedRecordIDs.remove(id);
    m_neighbours.actions.deleteHistoryRecord(id);
}

void HistoryController::toggleHistoryOriginal(const QString& id)
{
    m_neighbours.actions.toggleHistoryOriginal(id);
}

void HistoryController::toggleWholeText(const QString& id)
{
    if (!m_openedRecordIDs.remove(id))
        m_openedRecordIDs.insert(id);
    show();
}

void HistoryController::clearHistory()
{
    m_neighbours.actions.clearHistory();
}

void HistoryController::openHistoryFolder()
{
    m_neighbours.actions.openHistoryFolder();
}

void HistoryController::beginFind()
{
    m_isFinding = true;
    show();
}

void HistoryController::find(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    search(true);
}

void HistoryController::endFind()
{
    m_isFinding = false;
    m_query.clear();
    search(false);
}

/// Lists what the query asks for.
void HistoryController::search(bool showsWhatIsFoundSoFar)
{
    m_searchGuard.emplace();
    m_search.reset();
    if (m_query.isEmpty()) {
        m_matches.reset();
        takeRows(std::nullopt);
        return;
    }
    m_search = std::make_unique<HistoryFind>(m_records, m_query);
    m_showsWhatIsFoundSoFar = showsWhatIsFoundSoFar;
    m_lookedWhenShown = 0;
    searchOn();
}

void HistoryController::searchOn()
{
    const bool isDone = m_search->lookOn(bytesAtATime);
    // Each list costs time in proportion to its length: the next one is twice as long.
    const bool isWorthIt = m_showsWhatIsFoundSoFar && !m_search->matches().isEmpty()
        && m_search->looked() >= 2 * m_lookedWhenShown;
    if (isDone || isWorthIt) {
        m_lookedWhenShown = m_search->looked();
        m_matches = m_search->matches().size();
        const std::unique_ptr<HistoryFind> done = isDone ? std::move(m_search) : nullptr;
        takeRows((isDone ? *done : *m_search).matches());
    }
    if (!isDone)
        m_neighbours.mainQueue.post(m_searchGuard->bind([this] { searchOn(); }));
}

void HistoryController::takeRows(const std::optional<QList<qsizetype>>& listed)
{
    m_rows = HistoryRows({.records = m_records,
        .listed = listed,
        .expanded = m_neighbours.actions.expandedHistoryRecordIDs(),
        .now = m_neighbours.clock.sinceEpoch(),
        .timeZone = m_neighbours.timeZone(),
        .words = rowWords()});
    show();
}

HistoryRowWords HistoryController::rowWords() const
{
    const Localization& localization = m_neighbours.localization;
    return {
        .today = localization.LT(texts::today),
        .yesterday = localization.LT(texts::yesterday),
        .dictation = localization.LT(texts::dictationRecord),
        .translation = localization.LT(texts::translationRecord),
        .chat = localization.LT(texts::chatRecord),
        .editedResult = localization.LT(texts::editedResult),
        .originalTranscript = localization.LT(texts::originalTranscript),
        .targetName =
            [settings = &m_neighbours.settings](const QString& target) {
                return settings->TranslationDisplayNameForTarget(target);
            },
    };
}

QString HistoryController::storageText() const
{
    constexpr double bytesPerKilobyte = 1024;
    const QString size =
        QString::number(static_cast<double>(m_fileSize) / bytesPerKilobyte, 'f', 1);
    return m_neighbours.localization
        .desktopText(&DesktopTexts::historyStorage, texts::historyStorage)
        .arg(QString::number(m_records.size()), size);
}

QString HistoryController::emptyText() const
{
    if (!m_isRead || !m_rows.isEmpty() || m_search)
        return {};
    return m_neighbours.localization.LT(
        m_query.isEmpty() ? texts::noHistory : texts::noMatchingRecords);
}

void HistoryController::show()
{
    if (m_view)
        m_view->setContent(content());
}

} // namespace tavrin
