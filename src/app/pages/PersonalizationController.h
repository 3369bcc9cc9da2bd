#pragma once

#include "app/pages/PersonalizationContent.h"

#include <functional>

namespace tavrin {

class Preferences;

/// The window that keeps how the user likes texts to be written. Nothing reads it yet. Main thread
/// only.
class PersonalizationController {
public:
    struct Neighbours {
        Preferences& preferences;
        std::function<void(const QString& name)> playSound;
    };

    /// @param neighbours must outlive the controller.
    explicit PersonalizationController(Neighbours neighbours);

    /// The window; null while there is none.
    void setView(PersonalizationView* view) { m_view = view; }

    /// What the user has typed and chosen so far.
    [[nodiscard]] const PersonalizationContent& content() const { return m_content; }

    /// Shows the window with what is stored; what was not saved the last time is gone. Does nothing
    /// while there is no window.
    void showPersonalizationWindow();

    // What the user does.
    void changeSample(const QString& text) { m_content.sample = text; }

    /// The tone at @p index of the popup, clamped into the table.
    void selectTone(qsizetype index);

    /// Stores both and flushes to disk.
    void savePersonalization();

private:
    Neighbours m_neighbours;
    PersonalizationView* m_view = nullptr;
    PersonalizationContent m_content;
};

} // namespace tavrin
