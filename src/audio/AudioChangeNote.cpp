#include "audio/AudioChangeNote.h"

#include "base/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qint64 largestNote = 65'536; // Bytes. Three UIDs of a few KB at most.

QJsonObject toJson(const AudioChanges& changes)
{
    QJsonObject note;
    if (changes.output) {
        QJsonObject output{{u"uid"_s, changes.output->uid}};
        if (changes.output->previousMute)
            output.insert(u"mute"_s, static_cast<qint64>(*changes.output->previousMute));
        if (changes.output->previousVolume)
            output.insert(u"volume"_s, static_cast<double>(*changes.output->previousVolume));
        note.insert(u"output"_s, output);
    }
    if (changes.input) {
        note.insert(u"input"_s,
            QJsonObject{{u"previous"_s, changes.input->previousUid},
                {u"preferred"_s, changes.input->preferredUid}});
    }
    return note;
}

std::optional<AudioChanges::Output> outputIn(const QJsonObject& json)
{
    AudioChanges::Output output{json.value(u"uid"_s).toString(), {}, {}};
    const double mute = json.value(u"mute"_s).toDouble(-1);
    const double volume = json.value(u"volume"_s).toDouble(-1);
    if (mute == 0 || mute == 1)
        output.previousMute = static_cast<quint32>(mute);
    if (volume >= 0 && volume <= 1)
        output.previousVolume = static_cast<float>(volume);
    if (output.uid.isEmpty() || (!output.previousMute && !output.previousVolume))
        return std::nullopt;
    return output;
}

std::optional<AudioChanges::Input> inputIn(const QJsonObject& json)
{
    AudioChanges::Input input{
        json.value(u"previous"_s).toString(), json.value(u"preferred"_s).toString()};
    if (input.previousUid.isEmpty() || input.preferredUid.isEmpty())
        return std::nullopt;
    return input;
}

} // namespace

AudioChangeNote::AudioChangeNote(const QString& folder)
    : m_path(folder + u"/AudioChanges.json"_s)
    , m_claim(std::make_unique<QLockFile>(m_path + u".lock"_s))
{
    m_claim->setStaleLockTime(0); // A dead process's lock gives way at once, a living one's never.
}

AudioChangeNote::~AudioChangeNote() = default;

void AudioChangeNote::write(const AudioChanges& changes)
{
    if (changes.isEmpty()) {
        if (m_claim->isLocked()) {
            QFile::remove(m_path);
            m_claim->unlock();
        }
        return;
    }
    QDir().mkpath(QFileInfo(m_path).path());
    if (!m_claim->isLocked() && !m_claim->tryLock()) {
        qCWarning(log::audio) << "no note of audio changes, lock error" << m_claim->error();
        return;
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        || file.write(QJsonDocument(toJson(changes)).toJson(QJsonDocument::Compact)) < 0
        || !file.commit())
        qCWarning(log::audio) << "no note of audio changes, file error" << file.error();
}

AudioChanges AudioChangeNote::adopt()
{
    if (!QFile::exists(m_path) || m_claim->isLocked() || !m_claim->tryLock())
        return {};
    QFile file(m_path);
    QJsonObject note;
    if (file.open(QIODevice::ReadOnly) && file.size() <= largestNote)
        note = QJsonDocument::fromJson(file.read(largestNote)).object();
    AudioChanges changes{
        outputIn(note.value(u"output"_s).toObject()), inputIn(note.value(u"input"_s).toObject())};
    if (changes.isEmpty())
        write({});
    return changes;
}

} // namespace tavrin
