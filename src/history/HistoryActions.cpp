#include "history/HistoryActions.h"

#include "history/ClearHistoryTexts.h"
#include "history/HistoryRetention.h"
#include "history/HistoryStore.h"
#include "platform/Alerts.h"
#include "platform/Pasteboard.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"
#include "platform/programs/Workspace.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

HistoryActions::HistoryActions(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

bool HistoryActions::copyHistoryRecord(const QString& id)
{
    const std::optional<HistoryRecord> record = m_neighbours.store.historyRecordWithID(id);
    if (!record)
        return copy({});
    return copy(
        m_expandedHistoryRecordIDs.contains(id) ? record->transcript() : record->finalText());
}

void HistoryActions::copyLatestHistory()
{
    const HistoryRecords records = m_neighbours.store.historyRecords();
    copy(records.isEmpty() ? QString() : records.first().finalText());
}

bool HistoryActions::copy(const QString& text)
{
    if (text.isEmpty()) {
        m_neighbours.alerts.beep();
        return false;
    }
    const bool isCopied = m_neighbours.pasteboard.setString(text);
    m_neighbours.playSound(u"success"_s);
    return isCopied;
}

void HistoryActions::deleteHistoryRecord(const QString& id)
{
    m_expandedHistoryRecordIDs.remove(id);
    m_neighbours.store.removeHistoryRecord(id);
    m_neighbours.refreshHistoryView();
}

void HistoryActions::toggleHistoryOriginal(const QString& id)
{
    if (!m_expandedHistoryRecordIDs.remove(id) && !id.isEmpty())
        m_expandedHistoryRecordIDs.insert(id);
    m_neighbours.refreshHistoryView();
}

void HistoryActions::selectHistoryRetention(int index)
{
    const int last = static_cast<int>(retentionChoices.size()) - 1;
    const auto& choice = retentionChoices.at(static_cast<std::size_t>(std::clamp(index, 0, last)));
    m_neighbours.preferences.setValue(keys::historyRetention, choice.value.toString());
    m_neighbours.preferences.synchronize();
    static_cast<void>(m_neighbours.store.historyRecords()); // Prunes under the new rule.
    m_neighbours.refreshHistoryView();
}

void HistoryActions::clearHistory()
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.messageText = texts::clearHistoryQuestion.toString();
    alert.informativeText = texts::clearHistoryDetail.toString();
    alert.buttons = {texts::clearHistoryButton.toString(), texts::keepHistoryButton.toString()};
    m_neighbours.alerts.show(alert, m_guard.bind([this](const AlertAnswer& answer) {
        if (answer.button != 0)
            return;
        m_neighbours.store.clear();
        m_neighbours.refreshHistoryView();
    }));
}

void HistoryActions::openHistoryFolder()
{
    m_neighbours.workspace.openFolder(QFileInfo(m_neighbours.store.historyFileURL()).path());
}

void HistoryActions::showHistoryWindow()
{
    m_neighbours.selectHistoryPage();
    m_neighbours.refreshHistoryView();
    m_neighbours.workspace.activateThisApplication();
    m_neighbours.showMainWindow();
}

} // namespace tavrin
