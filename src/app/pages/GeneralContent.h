#pragma once

#include "audio/MicrophoneContent.h"

#include <QList>
#include <QString>

#include <optional>

namespace tavrin {

/// A popup whose items stand for something that has an identifier.
struct PopupContent {
    struct Item {
        QString title;
        QString identifier;

        friend bool operator==(const Item&, const Item&) = default;
    };

    QList<Item> items; ///< At least one.
    qsizetype selected = 0; ///< Index into items.

    friend bool operator==(const PopupContent&, const PopupContent&) = default;
};

/// What the general page shows of speech recognition.
struct RecogniserContent {
    PopupContent recognisers;
    PopupContent languages;
    bool hasLanguages = true; ///< Else there is nothing to choose from.

    friend bool operator==(const RecogniserContent&, const RecogniserContent&) = default;
};

/// What the general page shows.
struct GeneralContent {
    qsizetype interfaceLanguage = 0; ///< `interfaceLanguagePopup`: row of interfaceLanguages.
    MicrophoneContent microphones; ///< `microphonePopup`
    bool mutesDuringRecording = false; ///< `muteDuringRecordingToggle`
    std::optional<RecogniserContent> recogniser; ///< Empty where there is no choice: no such row.

    friend bool operator==(const GeneralContent&, const GeneralContent&) = default;
};

} // namespace tavrin
