#pragma once

#include "base/LocalizedText.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tavrin {

/// A way to recognise speech that the user can choose.
struct RecogniserChoice {
    QString identifier;
    LocalizedText name; ///< A few words.
};

/// What there is to choose from, and what is chosen for the next start of the program.
struct RecogniserChoices {
    QList<RecogniserChoice> recognisers; ///< Empty where the desktop has one and no choice.
    QString recogniser; ///< The identifier of one of them.
    QStringList languages; ///< That it can be set to hear, as BCP 47 tags; may be empty.
    QString language; ///< One of them; empty while it has nothing to hear with.
};

/// Which recogniser hears, and in which language, where that is the user's choice. Whatever is
/// chosen holds from the next start of the program, and is flushed to disk. Main thread only.
/// Linux: the engines that are set up, and the languages of installed models or of a server. macOS
/// has the system's recogniser and no choice.
class RecogniserSettings {
public:
    virtual ~RecogniserSettings() = default;

    /// Looks at the disk.
    [[nodiscard]] virtual RecogniserChoices choices() const = 0;

    /// @param identifier of one of the recognisers; anything else changes nothing.
    virtual void selectRecogniser(const QString& identifier) = 0;

    /// @param tag one of the languages of the chosen recogniser; anything else changes nothing.
    virtual void selectLanguage(const QString& tag) = 0;
};

} // namespace tavrin
