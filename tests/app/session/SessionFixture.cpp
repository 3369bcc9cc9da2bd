#include "app/session/SessionFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::testing {

SessionFixture::SessionFixture()
{
    systemInfo.temporaryFolder = folder.path();
    systemInfo.supportFolder = folder.path();

    preferences.arrange(keys::interfaceLanguage, u"en"_s);
    preferences.arrange(keys::cloudAccessToken, u"access"_s);
    preferences.arrange(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
    preferences.arrange(keys::translationShortcutIdentifiers, QStringList{u"optionSpace"_s});
    preferences.arrange(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});

    devices.addMicrophone(builtInMicrophone, u"Built-in"_s, u"built-in"_s);
    devices.addMicrophone(headset, u"Headset"_s, u"headset"_s);
    devices.addLoudspeaker(loudspeaker, u"loudspeaker"_s);
    devices.defaultInput = builtInMicrophone;
    devices.defaultOutput = loudspeaker;
    devices.onWrite = note;

    workspace.frontmost = RunningApplication{editorProcess, u"Notes"_s, u"org.Example.Notes"_s, 0};
    editor->processIdentifier = editorProcess;
    accessibility.focusedElements[editorProcess] = editor;
    auto window = std::make_shared<FakeElement>();
    window->processIdentifier = editorProcess;
    window->title = u"Slack | general"_s;
    accessibility.focusedWindows[editorProcess] = window;
    keyboard.onPaste = [this] {
        note(u"paste"_s);
        editor->insert(pasteboard.string());
    };

    transcriber.emplace(fileRecognizer, permissions, time, [] { return QStringList(); });
    api.emplace(http, preferences, systemInfo,
        CloudSettings{.localize = localization.localize(),
            .translationTarget = [this] { return settings.TranslationTarget(); },
            .baseUrl = u"https://service.invalid"_s});
    audioEnvironment.emplace(devices, preferences, systemInfo, time,
        [this] { return session->state() == SessionState::Recording; });
    processing.emplace(SessionProcessing::Neighbours{*api, *audioEnvironment, time,
        correctionLearning, delivery, errorAlert, estimator, hud, localization, time, preferences,
        [this] { note(u"refresh health"_s); },
        [this](const NewHistoryRecord& result) {
            note(u"save history"_s);
            saved.append(result);
        },
        settings, sounds, stageTimes, target, *transcriber});
    session.emplace(RecordingSession::Neighbours{accountPanel, alerts, *audioEnvironment, recorders,
        background, time, correctionLearning, errorAlert, hud, liveTranscriber, localization, time,
        preferences, *processing, settings, sounds, stageTimes, statusMenu, systemInfo, target});
    statusMenu.configureMenu();
    trace.clear();
}

void SessionFixture::preferHeadset()
{
    preferences.arrange(keys::preferredMicrophoneUID, u"headset"_s);
}

void SessionFixture::muteDuringRecording()
{
    preferences.arrange(keys::muteDuringRecording, true);
}

void SessionFixture::record(OperationMode mode, Seconds duration)
{
    press(mode);
    time.advance(duration);
}

void SessionFixture::recognise(const QString& transcript)
{
    time.advance(recognitionTime);
    fileRecognizer.calls.back().answer(transcript);
    time.advance(0s);
}

void SessionFixture::failRecognition(const Error& error)
{
    time.advance(0s);
    fileRecognizer.calls.back().fail(error);
    time.advance(0s);
}

void SessionFixture::answerCloud(const QString& text)
{
    http.answer(200, QJsonDocument(QJsonObject{{u"text"_s, text}}).toJson());
    time.advance(0s);
}

void SessionFixture::failCloud(int status, const QString& message)
{
    const QJsonObject error{{u"message"_s, message}};
    http.answer(status, QJsonDocument(QJsonObject{{u"error"_s, error}}).toJson());
    time.advance(0s);
}

void SessionFixture::complete(OperationMode mode, const QString& transcript, const QString& answer)
{
    record(mode, 10s);
    press(mode);
    recognise(transcript);
    answerCloud(answer);
    deliver();
}

QJsonObject SessionFixture::sentObject() const
{
    return QJsonDocument::fromJson(http.requests().last().body.value_or(QByteArray())).object();
}

} // namespace tavrin::testing
