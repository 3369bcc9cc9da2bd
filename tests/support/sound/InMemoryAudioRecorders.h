#pragma once

#include "platform/Clock.h"
#include "platform/audio/AudioRecorder.h"
#include "support/ports/Note.h"

#include <QFile>
#include <QList>
#include <QStringList>

#include <memory>
#include <optional>
#include <utility>

namespace tavrin::testing {

/// Recorders that hear what the test says. They record as long as the test's clock moves.
class InMemoryAudioRecorders final : public AudioRecorders {
public:
    /// One recording; stays readable after its recorder is gone.
    struct Recording {
        QString path;
        AudioRecorderSettings settings;
        bool metering = false;
        bool recording = false;
        bool stopped = false;
        float level = -160; ///< What the next updateMeters() takes, in dBFS.
        Error failure;
        QStringList calls; ///< "prepareToRecord", "record", "pause", "stop", "destroyed".

        Seconds recorded{0}; ///< Up to the last pause.
        Seconds since{0}; ///< When recording last began.
    };

    /// @param note is told of what is asked of a recorder: "create recorder", "meter on", "meter
    /// off", "prepare recorder", "record", "pause recorder", "stop recorder", "drop recorder".
    explicit InMemoryAudioRecorders(const Clock& clock, Note note = {})
        : m_clock(clock)
        , m_note(std::move(note))
    {
    }

    std::optional<Error> creationError;
    bool preparationSucceeds = true;
    bool recordingSucceeds = true;
    Error refusal; ///< The failure() of one that could not prepare or record.

    /// Every recording so far, oldest first.
    QList<std::shared_ptr<Recording>> recordings;

    [[nodiscard]] Recording& last() const { return *recordings.last(); }

    int warmUps = 0;

    void warmUp() override { ++warmUps; }

    [[nodiscard]] Result<std::unique_ptr<AudioRecorder>> createRecorder(
        const QString& path, const AudioRecorderSettings& settings) override
    {
        tell(m_note, QStringLiteral("create recorder"));
        if (creationError)
            return failure(*creationError);
        if (path.isEmpty() || settings.sampleRate <= 0 || settings.numberOfChannels <= 0)
            return failure({QStringLiteral("InMemoryAudioRecorders"), 1, {}});
        recordings.append(std::make_shared<Recording>());
        last().path = path;
        last().settings = settings;
        return std::make_unique<Recorder>(*this, recordings.last());
    }

private:
    class Recorder final : public AudioRecorder {
    public:
        Recorder(const InMemoryAudioRecorders& owner, std::shared_ptr<Recording> recording)
            : m_owner(owner)
            , m_recording(std::move(recording))
        {
        }

        ~Recorder() override
        {
            note(QStringLiteral("drop recorder"));
            finish();
            m_recording->calls.append(QStringLiteral("destroyed"));
        }

        Recorder(const Recorder&) = delete;
        Recorder& operator=(const Recorder&) = delete;

        void setMeteringEnabled(bool enabled) override
        {
            note(enabled ? QStringLiteral("meter on") : QStringLiteral("meter off"));
            m_recording->metering = enabled;
        }

        bool prepareToRecord() override
        {
            note(QStringLiteral("prepare recorder"));
            return prepare();
        }

        bool record() override
        {
            note(QStringLiteral("record"));
            m_recording->calls.append(QStringLiteral("record"));
            if (!m_owner.recordingSucceeds || m_recording->stopped || (!m_prepared && !prepare())) {
                m_recording->failure = m_owner.refusal;
                return false;
            }
            if (!m_recording->recording) {
                m_recording->since = m_owner.m_clock.uptime();
                m_recording->recording = true;
            }
            return true;
        }

        void pause() override
        {
            note(QStringLiteral("pause recorder"));
            m_recording->calls.append(QStringLiteral("pause"));
            m_recording->recorded = length();
            m_recording->recording = false;
        }

        void stop() override
        {
            note(QStringLiteral("stop recorder"));
            m_recording->calls.append(QStringLiteral("stop"));
            finish();
        }

        [[nodiscard]] Seconds currentTime() const override
        {
            return m_recording->stopped ? Seconds{0} : length();
        }

        void updateMeters() override
        {
            if (m_recording->metering)
                m_power = m_recording->level;
        }

        [[nodiscard]] float averagePower(int channel) const override
        {
            return channel == 0 ? m_power : -160;
        }

        [[nodiscard]] Error failure() const override { return m_recording->failure; }

    private:
        void note(const QString& line) const { tell(m_owner.m_note, line); }

        bool prepare()
        {
            m_recording->calls.append(QStringLiteral("prepareToRecord"));
            QFile file(m_recording->path);
            m_prepared = m_owner.preparationSucceeds && !m_recording->stopped
                && file.open(QIODevice::WriteOnly);
            if (!m_prepared)
                m_recording->failure = m_owner.refusal;
            return m_prepared;
        }

        [[nodiscard]] Seconds length() const
        {
            const Recording& recording = *m_recording;
            if (!recording.recording)
                return recording.recorded;
            return recording.recorded + (m_owner.m_clock.uptime() - recording.since);
        }

        void finish()
        {
            m_recording->recorded = length();
            m_recording->recording = false;
            m_recording->stopped = true;
        }

        const InMemoryAudioRecorders& m_owner;
        std::shared_ptr<Recording> m_recording;
        bool m_prepared = false;
        float m_power = -160;
    };

    const Clock& m_clock;
    Note m_note;
};

} // namespace tavrin::testing
