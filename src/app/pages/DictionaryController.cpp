#include "app/pages/DictionaryController.h"

#include "app/pages/DictionaryTexts.h"
#include "app/settings/Localization.h"
#include "app/vocabulary/TableIndex.h"
#include "dictionary/DictionaryStore.h"

#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr std::array filters{
    DictionaryFilter::All, DictionaryFilter::Learned, DictionaryFilter::Manual};

} // namespace

DictionaryController::DictionaryController(const Neighbours& neighbours)
    : m_neighbours(neighbours)
    , m_actions(neighbours.preferences, neighbours.clock, neighbours.alerts,
          {.playSound = neighbours.playSound, .endCorrectionWatch = neighbours.endCorrectionWatch})
{
}

void DictionaryController::setView(View<DictionaryContent>* view)
{
    m_view = view;
    m_actions.setPage(view ? this : nullptr);
}

DictionaryContent DictionaryController::content()
{
    readTerms();
    DictionaryContent content{
        .searchText = m_searchText,
        .filter = m_filter,
        .newTerm = m_newTerm,
        .learnsCorrections = isAutomaticDictionaryLearningOn(m_neighbours.preferences),
        .rows = {},
        .emptyText = {},
        .count = m_neighbours.localization.LT(
            texts::termCount, QString::number(m_terms.size()), QString::number(m_learned)),
    };
    const QString query = m_searchText.toLower();
    content.rows.reserve(static_cast<qsizetype>(m_terms.size()));
    for (const Term& term : m_terms) {
        if (admits(term) && term.lowered.contains(query))
            content.rows.append(term.row);
    }
    if (content.rows.isEmpty())
        content.emptyText = emptyText();
    return content;
}

void DictionaryController::searchTerms(const QString& text)
{
    setSearchText(text);
    refreshDictionaryView();
}

void DictionaryController::selectFilter(qsizetype index)
{
    m_filter = itemAtClampedIndex(filters, index);
    refreshDictionaryView();
}

void DictionaryController::toggleAutomaticDictionaryLearning(bool on)
{
    m_actions.toggleAutomaticDictionaryLearning(on);
    refreshDictionaryView();
}

void DictionaryController::refreshDictionaryView()
{
    if (m_view)
        m_view->setContent(content());
}

/// Reading the entries is quick, and so is finding out that they are the same ones; taking 20,000
/// of them apart with each letter typed is not.
void DictionaryController::readTerms()
{
    QList<DictionaryEntry> entries =
        DictionaryEntries(m_neighbours.preferences, m_neighbours.clock);
    if (entries == m_entries)
        return;
    m_entries = std::move(entries);
    m_terms.clear();
    m_terms.reserve(static_cast<std::size_t>(m_entries.size()));
    m_learned = 0;
    for (const DictionaryEntry& entry : std::as_const(m_entries)) {
        const QString source = entry.source();
        const bool isLearned = source == "auto"_L1;
        m_learned += isLearned ? 1 : 0;
        m_terms.push_back({.row = {entry.id(), entry.term(), isLearned},
            .lowered = entry.term().toLower(),
            .isManual = source == "manual"_L1});
    }
}

bool DictionaryController::admits(const Term& term) const
{
    switch (m_filter) {
    case DictionaryFilter::All:
        break;
    case DictionaryFilter::Learned:
        return term.row.isLearned;
    case DictionaryFilter::Manual:
        return term.isManual;
    }
    return true;
}

QString DictionaryController::emptyText() const
{
    return m_neighbours.localization.LT(
        m_searchText.isEmpty() ? texts::noTermsYet : texts::noMatchingTerms);
}

} // namespace tavrin
