#include "platform/linux/speech/LinuxRecogniserSettings.h"

#include "platform/linux/speech/ChosenEngine.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// What servers commonly hear.
const QStringList serverLanguages{u"zh-CN"_s, u"zh-TW"_s, u"yue-HK"_s, u"en-US"_s, u"ja-JP"_s,
    u"ko-KR"_s, u"fr-FR"_s, u"de-DE"_s, u"es-ES"_s, u"pt-BR"_s, u"it-IT"_s, u"nl-NL"_s, u"ru-RU"_s,
    u"uk-UA"_s, u"pl-PL"_s, u"tr-TR"_s, u"ar-SA"_s, u"hi-IN"_s, u"th-TH"_s, u"vi-VN"_s, u"id-ID"_s};

bool has(const RecogniserChoices& choices, const QString& identifier)
{
    return std::ranges::any_of(choices.recognisers,
        [&](const RecogniserChoice& choice) { return choice.identifier == identifier; });
}

void addLanguage(RecogniserChoices& choices, const QString& tag)
{
    if (!tag.isEmpty() && !choices.languages.contains(tag))
        choices.languages.append(tag);
}

} // namespace

LinuxRecogniserSettings::LinuxRecogniserSettings(Preferences& preferences, QStringList modelRoots)
    : m_preferences(preferences)
    , m_modelRoots(std::move(modelRoots))
{
}

RecogniserChoices LinuxRecogniserSettings::choices() const
{
    RecogniserChoices choices;
    choices.recogniser = chosenEngineName(m_preferences);
    choices.recognisers.append({engine_names::builtIn, texts::builtInRecogniser});
    const auto addSetUp = [&](const QString& identifier, const Setting<QString>& need,
                              const LocalizedText& name) {
        // One that was chosen in the file stays, whatever it lacks: the choice is shown as it is.
        if (choices.recogniser == identifier || !valueOf(m_preferences, need).trimmed().isEmpty())
            choices.recognisers.append({identifier, name});
    };
    addSetUp(engine_names::neural, keys::linuxSpeechOnnxModel, texts::neuralRecogniser);
    addSetUp(engine_names::http, keys::linuxSpeechHttpUrl, texts::serverRecogniser);
    addSetUp(engine_names::vosk, keys::linuxSpeechVoskUrl, texts::streamingRecogniser);
    if (choices.recogniser == engine_names::builtIn)
        addModels(choices);
    else if (choices.recogniser == engine_names::neural)
        addNeuralLanguages(choices);
    else
        addServerLanguages(choices);
    return choices;
}

void LinuxRecogniserSettings::selectRecogniser(const QString& identifier)
{
    if (!has(choices(), identifier))
        return;
    m_preferences.setValue(keys::linuxSpeechEngine, identifier);
    m_preferences.synchronize();
}

void LinuxRecogniserSettings::selectLanguage(const QString& tag)
{
    const RecogniserChoices present = choices();
    if (tag == present.language || !present.languages.contains(tag))
        return;
    if (present.recogniser == engine_names::builtIn)
        selectModel(tag);
    else
        m_preferences.setValue(keys::linuxSpeechLanguage, tag);
    m_preferences.synchronize();
}

void LinuxRecogniserSettings::addModels(RecogniserChoices& choices) const
{
    const auto used =
        findSphinxModel(valueOf(m_preferences, keys::linuxSpeechSphinxModel), m_modelRoots);
    choices.language = used ? used->language : QString();
    for (const InstalledSphinxModel& installed : installedSphinxModels(m_modelRoots))
        addLanguage(choices, installed.model.language);
    addLanguage(choices, choices.language);
}

/// What the model was made for, all of it at once: the first stands for them.
void LinuxRecogniserSettings::addNeuralLanguages(RecogniserChoices& choices) const
{
    const auto model = findOnnxModel(valueOf(m_preferences, keys::linuxSpeechOnnxModel));
    if (model && !model->languages.isEmpty())
        addLanguage(choices, choices.language = model->languages.first());
}

void LinuxRecogniserSettings::addServerLanguages(RecogniserChoices& choices) const
{
    choices.language = valueOf(m_preferences, keys::linuxSpeechLanguage);
    choices.languages = serverLanguages;
    addLanguage(choices, choices.language);
}

void LinuxRecogniserSettings::selectModel(const QString& tag)
{
    const QList<InstalledSphinxModel> installed = installedSphinxModels(m_modelRoots);
    const auto found = std::ranges::find(
        installed, tag, [](const InstalledSphinxModel& each) { return each.model.language; });
    if (found != installed.end())
        m_preferences.setValue(keys::linuxSpeechSphinxModel, found->folder);
}

} // namespace tavrin
