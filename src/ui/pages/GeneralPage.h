#pragma once

#include "app/pages/GeneralContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

namespace tavrin {
class GeneralController;
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Card;
class Popup;
class Switch;

/// `generalSettingsPage`: the language of the interface, the microphone and the recogniser.
class GeneralPage final : public Page, public View<GeneralContent> {
    Q_OBJECT

public:
    /// @param controller, localization must outlive the page.
    GeneralPage(QWidget& parent, GeneralController& controller, const Localization& localization);
    ~GeneralPage() override;

    GeneralPage(const GeneralPage&) = delete;
    GeneralPage& operator=(const GeneralPage&) = delete;

    void setContent(const GeneralContent& content) override;
    [[nodiscard]] QWidget* firstControl() const override;

private:
    void addInterfaceLanguage();
    void addTranslationLanguages();
    /// @param hasRecogniser gives the card a row more.
    void addAudio(bool hasRecogniser);
    void addRecogniser(Card& card);

    GeneralController& m_controller;
    const Localization& m_localization;
    Popup* m_interfaceLanguagePopup = nullptr;
    Popup* m_microphonePopup = nullptr;
    Switch* m_muteDuringRecordingToggle = nullptr;
    Popup* m_recogniserPopup = nullptr; ///< Null, like the next, where there is no choice.
    Popup* m_recogniserLanguagePopup = nullptr;
};

} // namespace tavrin::ui
