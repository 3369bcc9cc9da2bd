#include "audio/AudioChangeNote.h"

#include "base/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qint64 largestNote = 65'536; // Bytes. A handful of UIDs of a few KB at most.

QJsonObject toJson(const AudioChanges& changes)
{
    QJsonArray outputs;
    for (const AudioChanges::Output& change : changes.outputs) {
        QJsonObject output{{u"uid"_s, change.uid}};
        if (change.previousMute)
            output.insert(u"mute"_s, static_cast<qint64>(*change.previousMute));
        if (change.previousVolume)
            output.insert(u"volume"_s, static_cast<double>(*change.previousVolume));
        outputs.append(output);
    }
    QJsonArray inputs;
    for (const AudioChanges::Input& change : changes.inputs)
        inputs.append(QJsonObject{
            {u"previous"_s, change.previousUid}, {u"preferred"_s, change.preferredUid}});
    return {{u"outputs"_s, outputs}, {u"inputs"_s, inputs}};
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

AudioChanges changesIn(const QJsonObject& note)
{
    AudioChanges changes;
    for (const auto& each : note.value(u"outputs"_s).toArray()) {
        if (auto output = outputIn(each.toObject()))
            changes.outputs.append(std::move(*output));
    }
    for (const auto& each : note.value(u"inputs"_s).toArray()) {
        if (auto input = inputIn(each.toObject()))
            changes.inputs.append(std::move(*input));
    }
    return changes;
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
    if (m_claim->isLocked() && changes == m_written)
        return;
    QDir().mkpath(QFileInfo(m_path).path());
    if (!m_claim->isLocked() && !m_claim->tryLock()) {
        qCWarning(log::audio) << "no note of audio changes, lock error" << m_claim->error();
        return;
    }
    m_written = changes;
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
    AudioChanges changes = changesIn(note);
    if (changes.isEmpty())
        write({});
    m_written = changes;
    return changes;
}

} // namespace tavrin
