#pragma once

#include "base/CallbackGuard.h"

#include <QString>

#include <functional>

namespace tavrin {

class Alerts;
class Clock;
class DictionaryPageView;
class Preferences;

/// What the user does to the dictionary by hand. Refusals are a beep and nothing else.
/// Main thread only.
class DictionaryActions {
public:
    /// What lies outside the dictionary; both are called on the main thread.
    struct Effects {
        std::function<void(const QString& name)> playSound;
        std::function<void()> endCorrectionWatch; ///< Without learning from it.
    };

    /// The ports must outlive the actions.
    DictionaryActions(
        Preferences& preferences, const Clock& clock, Alerts& alerts, Effects effects);

    /// @param page null while there is none; must stay until it is set to null.
    void setPage(DictionaryPageView* page) { m_page = page; }

    /// Adds the page's new term. One that is there already is shown instead.
    void addDictionaryTerm();

    /// Asks for a new spelling of the entry with this id.
    void editDictionaryTerm(const QString& identifier);

    /// Removes every entry with this id, without asking.
    void deleteDictionaryTerm(const QString& identifier);

    void toggleAutomaticDictionaryLearning(bool on);

private:
    void addTermFrom(DictionaryPageView& page);
    void renameTerm(const QString& identifier, const QString& text);
    void refreshPage();

    Preferences& m_preferences;
    const Clock& m_clock;
    Alerts& m_alerts;
    Effects m_effects;
    DictionaryPageView* m_page = nullptr;
    CallbackGuard m_guard;
};

} // namespace tavrin
