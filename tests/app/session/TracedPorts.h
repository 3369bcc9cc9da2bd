#pragma once

#include "platform/HttpTransport.h"
#include "platform/Pasteboard.h"
#include "platform/audio/AudioRecorder.h"
#include "platform/preferences/Preferences.h"
#include "platform/programs/Workspace.h"
#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"
#include "support/ports/Note.h"

#include <QStringList>
#include <QUrl>

#include <utility>

/// What the program asks of a port, noted on its way to the in-memory port that answers it. What
/// the test itself asks of that one is not noted.
namespace tavrin::testing {

class TracedPreferences final : public Preferences {
public:
    TracedPreferences(Preferences& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    [[nodiscard]] QVariant value(const QString& key) const override { return m_inner.value(key); }

    void setValue(const QString& key, const QVariant& value) override
    {
        m_note(QStringLiteral("store ") + key);
        m_inner.setValue(key, value);
    }

    void remove(const QString& key) override { m_inner.remove(key); }

    void synchronize() override
    {
        m_note(QStringLiteral("synchronize"));
        m_inner.synchronize();
    }

private:
    Preferences& m_inner;
    Note m_note;
};

class TracedWorkspace final : public Workspace {
public:
    TracedWorkspace(Workspace& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    void warmUp() override { m_inner.warmUp(); }

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override
    {
        m_note(QStringLiteral("capture target"));
        return m_inner.frontmostApplication();
    }

    bool activate(const RunningApplication& application) override
    {
        m_note(QStringLiteral("activate ") + application.localizedName);
        return m_inner.activate(application);
    }

    [[nodiscard]] bool isActive(const RunningApplication& application) const override
    {
        return m_inner.isActive(application);
    }

    void activateThisApplication() override
    {
        m_note(QStringLiteral("come to front"));
        m_inner.activateThisApplication();
    }

    [[nodiscard]] QString bundleIdentifier() const override { return m_inner.bundleIdentifier(); }

    bool openUrl(const QUrl& url) override { return m_inner.openUrl(url); }

    bool openFolder(const QString& path) override { return m_inner.openFolder(path); }

    bool openSettings(SettingsPane pane) override { return m_inner.openSettings(pane); }

    [[nodiscard]] QList<RunningApplication> runningApplications() const override
    {
        return m_inner.runningApplications();
    }

    [[nodiscard]] QStringList preferredLanguages() const override
    {
        return m_inner.preferredLanguages();
    }

    [[nodiscard]] std::optional<QPoint> frontmostPoint() const override
    {
        return m_inner.frontmostPoint();
    }

    [[nodiscard]] bool isCompositing() const override { return m_inner.isCompositing(); }

    [[nodiscard]] bool reachesEveryProgram() const override
    {
        return m_inner.reachesEveryProgram();
    }

    [[nodiscard]] bool prefersReducedMotion() const override
    {
        return m_inner.prefersReducedMotion();
    }

private:
    Workspace& m_inner;
    Note m_note;
};

class TracedRecorders final : public AudioRecorders {
public:
    TracedRecorders(AudioRecorders& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    void warmUp() override { m_inner.warmUp(); }

    [[nodiscard]] Result<std::unique_ptr<AudioRecorder>> createRecorder(
        const QString& path, const AudioRecorderSettings& settings) override
    {
        m_note(QStringLiteral("create recorder"));
        auto inner = m_inner.createRecorder(path, settings);
        if (!inner)
            return inner;
        return std::make_unique<Recorder>(std::move(*inner), m_note);
    }

private:
    class Recorder final : public AudioRecorder {
    public:
        Recorder(std::unique_ptr<AudioRecorder> inner, Note note)
            : m_inner(std::move(inner))
            , m_note(std::move(note))
        {
        }

        ~Recorder() override { m_note(QStringLiteral("drop recorder")); }

        Recorder(const Recorder&) = delete;
        Recorder& operator=(const Recorder&) = delete;

        void setMeteringEnabled(bool enabled) override
        {
            m_note(enabled ? QStringLiteral("meter on") : QStringLiteral("meter off"));
            m_inner->setMeteringEnabled(enabled);
        }

        bool prepareToRecord() override
        {
            m_note(QStringLiteral("prepare recorder"));
            return m_inner->prepareToRecord();
        }

        bool record() override
        {
            m_note(QStringLiteral("record"));
            return m_inner->record();
        }

        void pause() override
        {
            m_note(QStringLiteral("pause recorder"));
            m_inner->pause();
        }

        void stop() override
        {
            m_note(QStringLiteral("stop recorder"));
            m_inner->stop();
        }

        [[nodiscard]] Seconds currentTime() const override { return m_inner->currentTime(); }

        void updateMeters() override { m_inner->updateMeters(); }

        [[nodiscard]] float averagePower(int channel) const override
        {
            return m_inner->averagePower(channel);
        }

        [[nodiscard]] Error failure() const override { return m_inner->failure(); }

    private:
        std::unique_ptr<AudioRecorder> m_inner;
        Note m_note;
    };

    AudioRecorders& m_inner;
    Note m_note;
};

class TracedLiveSpeechRecognizer final : public LiveSpeechRecognizer {
public:
    TracedLiveSpeechRecognizer(LiveSpeechRecognizer& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    [[nodiscard]] bool isAvailable() const override { return m_inner.isAvailable(); }

    [[nodiscard]] Result<std::unique_ptr<SpeechTask>> start(
        const SpeechRequest& request, SpeechResultHandler handler) override
    {
        m_note(QStringLiteral("start live text"));
        auto inner = m_inner.start(request, std::move(handler));
        if (!inner)
            return inner;
        return std::make_unique<Task>(std::move(*inner), m_note);
    }

private:
    class Task final : public SpeechTask {
    public:
        Task(std::unique_ptr<SpeechTask> inner, Note note)
            : m_inner(std::move(inner))
            , m_note(std::move(note))
        {
        }

        ~Task() override { m_note(QStringLiteral("stop live text")); }

        Task(const Task&) = delete;
        Task& operator=(const Task&) = delete;

    private:
        std::unique_ptr<SpeechTask> m_inner;
        Note m_note;
    };

    LiveSpeechRecognizer& m_inner;
    Note m_note;
};

class TracedFileSpeechRecognizer final : public FileSpeechRecognizer {
public:
    TracedFileSpeechRecognizer(FileSpeechRecognizer& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    [[nodiscard]] bool isAvailable() const override { return m_inner.isAvailable(); }

    [[nodiscard]] SpeechAvailability availability() const override
    {
        return m_inner.availability();
    }

    void warmUp() override { m_inner.warmUp(); }

    [[nodiscard]] std::unique_ptr<SpeechTask> recognize(
        const QString& path, const SpeechRequest& request, SpeechResultHandler handler) override
    {
        m_note(QStringLiteral("transcribe"));
        return m_inner.recognize(path, request, std::move(handler));
    }

private:
    FileSpeechRecognizer& m_inner;
    Note m_note;
};

class TracedHttpTransport final : public HttpTransport {
public:
    TracedHttpTransport(HttpTransport& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    void send(const HttpRequest& request, ResponseCompletion completion) override
    {
        m_note(QString::fromLatin1(request.method) + QLatin1Char(' ') + request.url.path());
        m_inner.send(request, std::move(completion));
    }

private:
    HttpTransport& m_inner;
    Note m_note;
};

class TracedPasteboard final : public Pasteboard {
public:
    TracedPasteboard(Pasteboard& inner, Note note)
        : m_inner(inner)
        , m_note(std::move(note))
    {
    }

    bool setString(const QString& text) override
    {
        m_note(QStringLiteral("pasteboard: ") + text);
        return m_inner.setString(text);
    }

private:
    Pasteboard& m_inner;
    Note m_note;
};

} // namespace tavrin::testing
