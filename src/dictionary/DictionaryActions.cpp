#include "dictionary/DictionaryActions.h"

#include "dictionary/DictionaryPageView.h"
#include "dictionary/DictionaryStore.h"
#include "dictionary/EditTermTexts.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int saveButton = 0;

std::optional<qsizetype> indexOfId(const QList<DictionaryEntry>& entries, const QString& identifier)
{
    if (identifier.isEmpty())
        return std::nullopt;
    const auto found = std::find_if(entries.begin(), entries.end(),
        [&](const DictionaryEntry& entry) { return entry.id() == identifier; });
    if (found == entries.end())
        return std::nullopt;
    return found - entries.begin();
}

constexpr QSize editFieldSize(320, 28);

Alert editAlert(const QString& term)
{
    return {
        .messageText = texts::editTerm.toString(),
        .informativeText = texts::editTermExplanation.toString(),
        .buttons = {texts::saveTerm.toString(), texts::cancelEditTerm.toString()},
        .fields = {{.label = {}, .text = term, .placeholder = {}, .size = editFieldSize}},
    };
}

} // namespace

DictionaryActions::DictionaryActions(
    Preferences& preferences, const Clock& clock, Alerts& alerts, Effects effects)
    : m_preferences(preferences)
    , m_clock(clock)
    , m_alerts(alerts)
    , m_effects(std::move(effects))
{
}

void DictionaryActions::addDictionaryTerm()
{
    if (m_page == nullptr || m_page->newTerm().trimmed().isEmpty())
        m_alerts.beep();
    else
        addTermFrom(*m_page);
}

void DictionaryActions::addTermFrom(DictionaryPageView& page)
{
    const QString term = page.newTerm().trimmed();
    QList<DictionaryEntry> entries = DictionaryEntries(m_preferences, m_clock);
    page.clearNewTerm();
    if (indexOfTerm(entries, term)) {
        page.setSearchText(term);
        page.selectAllFilter();
        page.refreshDictionaryView();
        m_alerts.beep();
        return;
    }
    entries.prepend(DictionaryEntry::manual(term, m_clock.sinceEpoch()));
    SaveDictionaryEntries(m_preferences, entries);
    page.refreshDictionaryView();
    m_effects.playSound(u"success"_s);
}

void DictionaryActions::editDictionaryTerm(const QString& identifier)
{
    const QList<DictionaryEntry> entries = DictionaryEntries(m_preferences, m_clock);
    const auto index = indexOfId(entries, identifier);
    if (!index)
        return;
    m_alerts.show(editAlert(entries[*index].term()),
        m_guard.bind([this, identifier](const AlertAnswer& answer) {
            if (answer.button == saveButton && !answer.fields.isEmpty())
                renameTerm(identifier, answer.fields.first().trimmed());
        }));
}

void DictionaryActions::renameTerm(const QString& identifier, const QString& text)
{
    if (text.isEmpty())
        return;
    // Read again: while the alert was open, learning may have changed the dictionary.
    QList<DictionaryEntry> entries = DictionaryEntries(m_preferences, m_clock);
    const auto index = indexOfId(entries, identifier);
    if (!index)
        return;
    for (qsizetype other = 0; other < entries.size(); ++other) {
        if (other != *index && entries[other].hasTerm(text)) {
            m_alerts.beep();
            return;
        }
    }
    entries[*index] = entries[*index].renamed(text, m_clock.sinceEpoch());
    SaveDictionaryEntries(m_preferences, entries);
    refreshPage();
}

void DictionaryActions::deleteDictionaryTerm(const QString& identifier)
{
    QList<DictionaryEntry> entries = DictionaryEntries(m_preferences, m_clock);
    if (!indexOfId(entries, identifier))
        return;
    entries.removeIf([&](const DictionaryEntry& entry) { return entry.id() == identifier; });
    SaveDictionaryEntries(m_preferences, entries);
    refreshPage();
}

void DictionaryActions::toggleAutomaticDictionaryLearning(bool on)
{
    m_preferences.setValue(keys::automaticDictionaryLearning, on);
    m_preferences.synchronize();
    if (!isAutomaticDictionaryLearningOn(m_preferences))
        m_effects.endCorrectionWatch();
}

void DictionaryActions::refreshPage()
{
    if (m_page != nullptr)
        m_page->refreshDictionaryView();
}

} // namespace tavrin
