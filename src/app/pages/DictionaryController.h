#pragma once

#include "app/pages/DictionaryContent.h"
#include "app/windows/View.h"
#include "dictionary/DictionaryActions.h"
#include "dictionary/DictionaryEntry.h"
#include "dictionary/DictionaryPageView.h"

#include <functional>
#include <vector>

namespace tavrin {

class Alerts;
class Clock;
class Localization;
class Preferences;

/// The dictionary page: which terms it lists, and what its controls do. What the user types and
/// chooses on the page is kept here, with a page and without one. Main thread only.
class DictionaryController final : public DictionaryPageView {
public:
    struct Neighbours {
        Alerts& alerts;
        const Clock& clock;
        const Localization& localization;
        Preferences& preferences;
        std::function<void(const QString& name)> playSound;
        std::function<void()> endCorrectionWatch; ///< Without learning from it.
        std::function<void()> showPersonalizationWindow;
    };

    /// @param neighbours must outlive the controller.
    explicit DictionaryController(const Neighbours& neighbours);

    DictionaryController(const DictionaryController&) = delete;
    DictionaryController& operator=(const DictionaryController&) = delete;

    /// The page; null while there is none. Shows it nothing.
    void setView(View<DictionaryContent>* view);

    /// What the page shows now; reads the dictionary anew.
    [[nodiscard]] DictionaryContent content();

    // What the user does.

    /// Lists the terms with @p text in them, in whatever letter case.
    void searchTerms(const QString& text);

    /// The segment at @p index, clamped.
    void selectFilter(qsizetype index);

    /// What stands in the field for a new term; nothing is added.
    void enterNewTerm(const QString& text) { m_newTerm = text; }

    void addDictionaryTerm() { m_actions.addDictionaryTerm(); }

    void editDictionaryTerm(const QString& identifier) { m_actions.editDictionaryTerm(identifier); }

    void deleteDictionaryTerm(const QString& identifier)
    {
        m_actions.deleteDictionaryTerm(identifier);
    }

    void toggleAutomaticDictionaryLearning(bool on);

    void showPersonalizationWindow() const { m_neighbours.showPersonalizationWindow(); }

    // What the dictionary's actions do.
    [[nodiscard]] QString newTerm() const override { return m_newTerm; }

    void clearNewTerm() override { m_newTerm.clear(); }

    void setSearchText(const QString& text) override { m_searchText = text; }

    void selectAllFilter() override { m_filter = DictionaryFilter::All; }

    /// Lists what the dictionary holds now, as far as search and filter admit it. Called too when
    /// the dictionary has changed otherwise.
    void refreshDictionaryView() override;

private:
    /// What is asked of an entry again with each letter typed.
    struct Term {
        DictionaryRow row;
        QString lowered;
        bool isManual = false;
    };

    void readTerms();
    [[nodiscard]] bool admits(const Term& term) const;
    [[nodiscard]] QString emptyText() const;

    Neighbours m_neighbours;
    DictionaryActions m_actions;
    View<DictionaryContent>* m_view = nullptr;

    QString m_searchText;
    DictionaryFilter m_filter = DictionaryFilter::All;
    QString m_newTerm;

    QList<DictionaryEntry> m_entries; ///< What m_terms was made of.
    std::vector<Term> m_terms;
    qsizetype m_learned = 0; ///< Of m_terms.
};

} // namespace tavrin
