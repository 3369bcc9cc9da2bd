#pragma once

#include "app/FakePanels.h"
#include "app/menu/StatusMenu.h"
#include "app/notices/ErrorAlert.h"
#include "app/session/ProcessingTimeEstimator.h"
#include "app/session/RecordingSession.h"
#include "app/session/SessionProcessing.h"
#include "app/session/SoundEffects.h"
#include "app/session/StageTimes.h"
#include "app/session/TracedNeighbours.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "audio/AudioEnvironment.h"
#include "cloud/TavrinAPI.h"
#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "history/HistoryStore.h"
#include "platform/preferences/PreferenceKeys.h"
#include "speech/LiveTranscriber.h"
#include "speech/SystemTranscriber.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryStatusItem.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "support/sound/InMemoryAudioRecorders.h"
#include "support/sound/InMemorySoundPlayer.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// A session among its real neighbours on a small desktop: a signed-in user, and the editor
/// "Notes" in front.
///
/// `trace` holds what reached the ports and the pages, in order.
class SessionFixture : public ::testing::Test {
protected:
    static constexpr qint64 editorProcess = 7;
    static constexpr AudioDeviceId builtInMicrophone = 1;
    static constexpr AudioDeviceId headset = 2;
    static constexpr AudioDeviceId loudspeaker = 3;
    static constexpr Seconds recognitionTime{1};
    static constexpr Seconds deliveryTime{0.78}; ///< From the answer of the cloud to the outcome.

    SessionFixture();

    // What the user may have set.

    void preferHeadset();
    void muteDuringRecording();

    // The steps of a session.

    void press(OperationMode mode) { session->toggleOperationMode(mode); }

    void record(OperationMode mode, Seconds duration);

    /// Answers for the recording that was finished last.
    void recognise(const QString& transcript);
    void failRecognition(const Error& error);

    void answerCloud(const QString& text);
    void failCloud(int status, const QString& message);

    void deliver() { time.advance(deliveryTime); }

    /// Everything from pressing to the outcome.
    void complete(OperationMode mode, const QString& transcript, const QString& answer);

    /// The JSON object of the last request.
    [[nodiscard]] QJsonObject sentObject() const;

    [[nodiscard]] QStringList takeTrace() { return std::exchange(trace, {}); }

    /// Whether the file of the last recording is there.
    [[nodiscard]] bool recordingExists() const { return QFile::exists(recorders.last().path); }

    /// As at the end of the program.
    void endSession()
    {
        session.reset();
        processing.reset();
    }

    // The desktop.
    QStringList trace;
    Note onNote; ///< Told of each line when it is noted.
    const Note note = [this](const QString& line) {
        trace.append(line);
        if (onNote)
            onNote(line);
    };
    QTemporaryDir folder;
    VirtualTime time;
    InMemorySystemInfo systemInfo;
    InMemoryPreferences preferences{note};
    InMemoryWorkspace workspace{note};
    InMemoryAccessibility accessibility;
    InMemoryAccessibility::ElementPointer editor = std::make_shared<FakeElement>();
    InMemoryAudioDevices devices;
    InMemoryBackgroundQueue background;
    InMemoryAudioRecorders recorders{time, note};
    InMemoryPermissions permissions;
    InMemoryLiveSpeechRecognizer liveRecognizer{note};
    InMemoryFileSpeechRecognizer fileRecognizer{note};
    InMemoryHttpTransport http{time, note};
    InMemoryPasteboard pasteboard{note};
    RecordingKeyboard keyboard;
    ScriptedAlerts alerts{note};
    InMemorySoundPlayer soundPlayer{note};
    InMemoryStatusItem statusItem{note};

    // The neighbours.
    FakeAccountPanel accountPanel{note};
    TracedCorrectionLearning correctionLearning{note};
    /// What was given to the history.
    QList<NewHistoryRecord> saved;
    TracedHUD hud{note};

    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    ErrorAlert errorAlert{alerts, localization};
    SoundEffects sounds{soundPlayer};
    ProcessingTimeEstimator estimator{preferences};
    StatusMenu statusMenu{{localization, settings, statusItem}, StatusMenu::Actions()};
    TargetContext target{workspace, accessibility};
    TextDelivery delivery{{pasteboard, workspace, accessibility, keyboard, time}, target};
    LiveTranscriber liveTranscriber{
        liveRecognizer, permissions, time, [] { return QStringList(); }};
    std::optional<SystemTranscriber> transcriber;
    std::optional<TavrinAPI> api;
    std::optional<AudioEnvironment> audioEnvironment;
    StageTimes stageTimes;
    std::optional<SessionProcessing> processing;
    std::optional<RecordingSession> session;
};

} // namespace tavrin::testing
