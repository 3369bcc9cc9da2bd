#pragma once

#include "platform/linux/speech/sphinx/SphinxModel.h"
#include "platform/speech/RecogniserSettings.h"

namespace tavrin {

class Preferences;

/// Chooses among the engines of LinuxSpeech by their preferences: the built-in one, the neural one
/// where it has a model, and the servers that have an address. The built-in one hears the languages
/// of the installed models, a neural model those it was made for, a server whatever it is asked
/// for.
class LinuxRecogniserSettings final : public RecogniserSettings {
public:
    /// @param preferences must outlive this object.
    /// @param modelRoots where models are installed.
    explicit LinuxRecogniserSettings(
        Preferences& preferences, QStringList modelRoots = sphinxModelRoots());

    [[nodiscard]] RecogniserChoices choices() const override;
    void selectRecogniser(const QString& identifier) override;
    void selectLanguage(const QString& tag) override;

private:
    void addModels(RecogniserChoices& choices) const;
    void addNeuralLanguages(RecogniserChoices& choices) const;
    void addServerLanguages(RecogniserChoices& choices) const;
    void selectModel(const QString& tag);

    Preferences& m_preferences;
    QStringList m_modelRoots;
};

} // namespace tavrin
