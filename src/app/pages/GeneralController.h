#pragma once

#include "app/pages/GeneralContent.h"
#include "app/windows/View.h"

#include <QStringList>

namespace tavrin {

class Alerts;
class AudioEnvironment;
class Localization;
class Preferences;
class RecogniserSettings;
struct RecogniserChoices;

/// The general page: the language of the interface, the microphone and the recogniser. Main thread
/// only.
class GeneralController {
public:
    struct Neighbours {
        Alerts& alerts;
        AudioEnvironment& audioEnvironment;
        const Localization& localization;
        Preferences& preferences;
        RecogniserSettings& recogniserSettings;
    };

    /// @param neighbours must outlive the controller.
    explicit GeneralController(const Neighbours& neighbours);

    /// The page; null while there is none. Shows it nothing.
    void setView(View<GeneralContent>* view) { m_view = view; }

    /// What the page shows now, with the microphones that were there at the last refresh.
    [[nodiscard]] GeneralContent content() const;

    /// The titles of the language popup, and how many languages there are to translate into. Asked
    /// for when the page is built.
    [[nodiscard]] static QStringList interfaceLanguageTitles();
    [[nodiscard]] QString translationLanguagesCount() const;

    /// Looks for the microphones again and shows everything anew. Called when the page is built and
    /// whenever it is chosen; does nothing while there is no page.
    void refreshMicrophoneControls();

    // What the user does. Rows are clamped into their popups.
    void selectInterfaceLanguage(qsizetype row);
    void selectPreferredMicrophone(qsizetype row);
    void toggleMuteDuringRecording(bool on);

    /// Both hold from the next start, and say so in an alert when they change anything.
    void selectRecogniser(qsizetype row);
    void selectRecogniserLanguage(qsizetype row);

private:
    void show();
    [[nodiscard]] std::optional<RecogniserContent> recogniserContent() const;
    [[nodiscard]] PopupContent languageItems(const RecogniserChoices& choices) const;
    void askToReopen();

    Neighbours m_neighbours;
    View<GeneralContent>* m_view = nullptr;
    MicrophoneContent m_microphones;
};

} // namespace tavrin
