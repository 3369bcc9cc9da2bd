#include "platform/linux/speech/LinuxSpeech.h"

#include "platform/linux/desktop/XdgFolders.h"
#include "platform/linux/speech/ChosenEngine.h"
#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"
#include "platform/linux/speech/process/ProcessEngine.h"
#include "platform/linux/speech/servers/HttpSpeechEngine.h"
#include "platform/linux/speech/servers/ServerAddress.h"
#include "platform/linux/speech/servers/VoskSpeechEngine.h"
#include "platform/linux/speech/sphinx/SphinxModel.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr double longestIdle = 7 * 24 * 60; // Minutes.

std::optional<SphinxModel> sphinxModel(const Preferences& preferences)
{
    return findSphinxModel(valueOf(preferences, keys::linuxSpeechSphinxModel), sphinxModelRoots());
}

SpeechServer serverAt(const Setting<QString>& address, const QString& plain,
    const QString& encrypted, const Preferences& preferences)
{
    SpeechServer server;
    server.setAddress = valueOf(preferences, address);
    server.address = speechServerAddress(server.setAddress, plain, encrypted);
    server.language = valueOf(preferences, keys::linuxSpeechLanguage);
    return server;
}

SpeechServer httpServer(const Preferences& preferences)
{
    SpeechServer server = serverAt(keys::linuxSpeechHttpUrl, u"http"_s, u"https"_s, preferences);
    server.model = valueOf(preferences, keys::linuxSpeechHttpModel);
    server.key = valueOf(preferences, keys::linuxSpeechHttpKey);
    return server;
}

SpeechServer voskServer(const Preferences& preferences)
{
    return serverAt(keys::linuxSpeechVoskUrl, u"ws"_s, u"wss"_s, preferences);
}

/// PocketSphinx in the recogniser's process.
std::unique_ptr<SpeechEngine> sphinxEngine(
    const std::optional<SphinxModel>& model, const QString& recognizer)
{
    if (!model)
        return std::make_unique<ProcessEngine>(
            ProcessEngine::Settings{.availability = {false, texts::noSphinxModel, {}}});
    return std::make_unique<ProcessEngine>(ProcessEngine::Settings{
        .command = {recognizer,
            {engine_names::builtIn, model->acousticModel, model->dictionary, model->languageModel,
                model->language}},
        .availability = {true, texts::sphinxReady, model->language},
        .broken = {false, texts::brokenSphinxModel, model->acousticModel},
        .longestUtterance = sphinxLongestUtterance,
    });
}

/// sherpa-onnx in the recogniser's process.
std::unique_ptr<SpeechEngine> neuralEngine(
    const Preferences& preferences, const QString& recognizer)
{
    const QString folder = valueOf(preferences, keys::linuxSpeechOnnxModel);
    const OnnxResult<OnnxModel> model = findOnnxModel(folder);
    if (!model)
        return std::make_unique<ProcessEngine>(ProcessEngine::Settings{
            .availability = {false, textOf(model.error().fault), model.error().detail}});
    const QString set = valueOf(preferences, keys::linuxSpeechOnnxLibrary);
    const QString library = set.isEmpty() ? xdg::dataHome() + u"/Tavrin/sherpa-onnx"_s : set;
    return std::make_unique<ProcessEngine>(ProcessEngine::Settings{
        .command = {recognizer,
            {engine_names::neural, library, folder,
                valueOf(preferences, keys::linuxSpeechOnnxFinalModel)}},
        .availability = {true, texts::onnxReady, QDir(folder).dirName()},
        .broken = {false, texts::onnxModelRefused, folder},
        .longestUtterance = onnxLongestUtterance,
    });
}

/// The language that its model hears; the first where there are several.
QString neuralLanguage(const Preferences& preferences)
{
    const OnnxResult<OnnxModel> model =
        findOnnxModel(valueOf(preferences, keys::linuxSpeechOnnxModel));
    return model ? model->languages.value(0) : QString{};
}

std::unique_ptr<SpeechEngine> chosenEngine(
    const Preferences& preferences, const QString& recognizer)
{
    const QString chosen = chosenEngineName(preferences);
    if (chosen == engine_names::http)
        return std::make_unique<HttpSpeechEngine>(httpServer(preferences));
    if (chosen == engine_names::vosk)
        return std::make_unique<VoskSpeechEngine>(voskServer(preferences));
    if (chosen == engine_names::neural)
        return neuralEngine(preferences, recognizer);
    return sphinxEngine(sphinxModel(preferences), recognizer);
}

} // namespace

QString recognizerProgram()
{
    return QCoreApplication::applicationDirPath() + u"/tavrin-recognizer"_s;
}

LinuxSpeech createLinuxSpeech(
    const Preferences& preferences, OpenSpeechCapture openCapture, const QString& recognizer)
{
    const Seconds restAfter{
        60 * std::clamp(valueOf(preferences, keys::linuxSpeechIdleMinutes), 0.0, longestIdle)};
    const auto thread =
        std::make_shared<SpeechEngineThread>(chosenEngine(preferences, recognizer), restAfter);
    return {std::make_unique<EngineFileRecognizer>(thread),
        std::make_unique<EngineLiveRecognizer>(thread, std::move(openCapture))};
}

QString linuxSpeechLanguage(const Preferences& preferences)
{
    const QString chosen = chosenEngineName(preferences);
    if (chosen == engine_names::builtIn) {
        const std::optional<SphinxModel> model = sphinxModel(preferences);
        return model ? model->language : QString{};
    }
    if (chosen == engine_names::neural)
        return neuralLanguage(preferences);
    const SpeechServer server =
        chosen == engine_names::http ? httpServer(preferences) : voskServer(preferences);
    return server.address ? server.language : QString{};
}

} // namespace tavrin
