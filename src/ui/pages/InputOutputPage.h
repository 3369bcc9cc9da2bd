#pragma once

#include "app/pages/InputOutputContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

#include <array>

namespace tavrin {
class InputOutputController;
class Localization;
struct LocalizedText;
} // namespace tavrin

namespace tavrin::ui {

class Card;
class Label;
class Popup;

/// The page of shortcuts, writing style and target language.
class InputOutputPage final : public Page, public View<InputOutputContent> {
    Q_OBJECT

public:
    /// @param controller, localization must outlive the page.
    InputOutputPage(
        QWidget& parent, InputOutputController& controller, const Localization& localization);
    ~InputOutputPage() override;

    InputOutputPage(const InputOutputPage&) = delete;
    InputOutputPage& operator=(const InputOutputPage&) = delete;

    void setContent(const InputOutputContent& content) override;
    [[nodiscard]] QWidget* firstControl() const override;

private:
    struct Operation;

    /// A card with its title, explanation and two popups for shortcuts.
    Card& addOperation(const Operation& operation);
    Popup& addShortcut(Card& card, const QRect& frame, ShortcutSlot slot, const QString& name);
    void addStatus();

    InputOutputController& m_controller;
    const Localization& m_localization;
    std::array<Popup*, shortcutSlots.size()> m_shortcutPopups{}; ///< In the order of shortcutSlots.
    Popup* m_outputStylePopup = nullptr;
    Popup* m_translationPopup = nullptr;
    Label* m_shortcutStatusLabel = nullptr;
};

} // namespace tavrin::ui
