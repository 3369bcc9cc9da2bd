#pragma once

#include "app/pages/InputOutputContent.h"
#include "app/windows/View.h"

#include <QStringList>

namespace tavrin {

class Settings;
class ShortcutSettings;
class StatusMenu;

/// The page for input and output: puts together what the shortcuts and the status menu, which have
/// the same choices, want shown, and tells them what the user chooses. Main thread only.
class InputOutputController final : private View<ShortcutContent>, private View<OutputContent> {
public:
    struct Neighbours {
        Settings& settings;
        ShortcutSettings& shortcutSettings;
        StatusMenu& statusMenu;
    };

    /// @param neighbours must outlive the controller.
    explicit InputOutputController(const Neighbours& neighbours);

    InputOutputController(const InputOutputController&) = delete;
    InputOutputController& operator=(const InputOutputController&) = delete;

    /// The page; null while there is none. Shows it nothing.
    void setView(View<InputOutputContent>* view);

    /// What the page shows now.
    [[nodiscard]] InputOutputContent content();

    // The titles of the popups, in the order of their tables. Asked for when the page is built.
    [[nodiscard]] QStringList shortcutTitles() const;
    [[nodiscard]] QStringList outputStyleTitles() const;
    [[nodiscard]] QStringList translationTargetTitles() const;

    // What the user chooses. Rows are clamped into their popups.

    /// One that another popup has already is refused with an alert, and the popups go back.
    void selectShortcut(ShortcutSlot slot, qsizetype row);
    void selectStylePopup(qsizetype row);
    void selectTranslationPopup(qsizetype row);

private:
    void setContent(const ShortcutContent& content) override;
    void setContent(const OutputContent& content) override;
    void show();

    Neighbours m_neighbours;
    View<InputOutputContent>* m_view = nullptr;
};

} // namespace tavrin
