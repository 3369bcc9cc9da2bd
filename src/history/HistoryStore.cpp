#include "history/HistoryStore.h"

#include "base/Log.h"
#include "history/HistoryJson.h"
#include "history/HistoryRetention.h"
#include "history/PortableJson.h"
#include "platform/BackgroundQueue.h"
#include "platform/Clock.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "platform/SystemInfo.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QUuid>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr auto privateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr auto privateFolder = privateFile | QFileDevice::ExeOwner;

const QString& historyFileName()
{
    static const QString name = u"TranscriptionHistory.json"_s;
    return name;
}

/// Replaces the file by what @p content writes into it, or leaves it as it was.
bool replaceFile(const QString& path, const std::function<bool(QSaveFile&)>& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(privateFile);
    return content(file) && file.commit();
}

bool replaceFile(const QString& path, const QByteArray& content)
{
    return replaceFile(
        path, [&](QSaveFile& file) { return file.write(content) == content.size(); });
}

double oldestOf(const HistoryRecords& records)
{
    double oldest = std::numeric_limits<double>::infinity();
    for (const HistoryRecord& record : records)
        oldest = std::min(oldest, record.timestamp());
    return oldest;
}

HistoryRecord recordOf(const NewHistoryRecord& result, Seconds now)
{
    QJsonObject object{
        {u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
        {u"timestamp"_s, now.count()},
        {u"transcript"_s, result.transcript},
        {u"finalText"_s, result.finalText},
        {u"delivery"_s, result.delivery.isNull() ? u"保存在剪贴板"_s : result.delivery},
        {u"mode"_s, result.mode.isNull() ? u"dictation"_s : result.mode},
        {u"inputCharacters"_s, result.transcript.size()},
        {u"outputCharacters"_s, result.finalText.size()},
        {u"audioSeconds"_s, std::max(result.audio.count(), 0.0)},
        {u"processingSeconds"_s, std::max(result.processing.count(), 0.0)},
        {u"application"_s, QJsonObject::fromVariantMap(result.application)},
    };
    if (!result.targetLanguage.isEmpty())
        object.insert(u"targetLanguage"_s, result.targetLanguage);
    return HistoryRecord::fromObject(object);
}

} // namespace

/// What a read of the file gave.
struct HistoryStore::Loaded {
    Stamp stamp;
    ParsedHistory history;
    double oldest = 0;
    bool readable = false;
};

/// How a write ended.
struct HistoryStore::Written {
    bool succeeded = false;
    Stamp stamp;
};

HistoryStore::HistoryStore(const Ports& ports)
    : m_ports(ports)
{
}

HistoryStore::~HistoryStore() = default;

QString HistoryStore::historyFileURL()
{
    const QString folder = m_ports.systemInfo.applicationSupportDirectory() + u"/Tavrin"_s;
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, privateFolder);
    QString path = folder + u'/' + historyFileName();
    if (!QFileInfo::exists(path))
        migrate(path);
    return path;
}

void HistoryStore::migrate(const QString& path)
{
    const QString old =
        m_ports.systemInfo.applicationSupportDirectory() + u"/Sorvel/"_s + historyFileName();
    if (QFile::copy(old, path)) {
        QFile::setPermissions(path, privateFile);
        return;
    }
    const QVariant stored = m_ports.preferences.value(keys::transcriptionHistory);
    const QJsonArray legacy = stored.typeId() == QMetaType::QVariantList
        ? QJsonArray::fromVariantList(stored.toList())
        : QJsonArray();
    if (legacy.isEmpty()) {
        replaceFile(path, "[]"_ba);
    } else if (replaceFile(path, portableJson(QJsonDocument(legacy)))) {
        m_ports.preferences.remove(keys::transcriptionHistory);
    }
}

HistoryRecords HistoryStore::historyRecords()
{
    const QString path = historyFileURL();
    if (!isCurrent(path))
        adopt(load(path));
    const double cutoff = retentionCutoff(retention(), m_ports.clock.sinceEpoch());
    bool changed = std::exchange(m_mended, false);
    if (cutoff > 0 && m_oldest < cutoff)
        changed = pruneHistory(m_records, cutoff) || changed;
    if (changed)
        writeHistoryRecords(HistoryRecords(m_records));
    return m_records;
}

bool HistoryStore::writeHistoryRecords(const HistoryRecords& records)
{
    m_records = records;
    m_oldest = oldestOf(records);
    m_mended = false;
    if (m_writing) {
        m_writeAgain = true;
        return true;
    }
    const QFileInfo folder(QFileInfo(historyFileURL()).path());
    if (!folder.isDir() || !folder.isWritable()) {
        qCWarning(log::history) << "The history's folder cannot be written";
        m_stamp = {};
        return false;
    }
    startWriting();
    return true;
}

void HistoryStore::saveHistoryTranscript(const NewHistoryRecord& result)
{
    if (retention() == "none"_L1)
        return;
    HistoryRecords records = historyRecords();
    m_records = {}; // So that the list is not copied for the sake of one record.
    records.prepend(recordOf(result, m_ports.clock.sinceEpoch()));
    writeHistoryRecords(records);
    if (m_saved)
        m_saved();
}

std::optional<HistoryRecord> HistoryStore::historyRecordWithID(const QString& id)
{
    const HistoryRecords records = historyRecords();
    const auto found = std::ranges::find(records, id, &HistoryRecord::id);
    return found == records.end() ? std::nullopt : std::optional(*found);
}

void HistoryStore::warmUp()
{
    const QString path = historyFileURL();
    if (isCurrent(path))
        return;
    const auto loaded = std::make_shared<Loaded>();
    m_ports.backgroundQueue.run(
        [path, loaded] { *loaded = load(path); }, m_guard.bind([this, path, loaded] {
            if (!isCurrent(path) && loaded->stamp == stampOf(path))
                adopt(std::move(*loaded));
        }));
}

void HistoryStore::flush()
{
    while (m_writing)
        m_ports.backgroundQueue.drain();
}

QString HistoryStore::retention() const
{
    return retentionFrom(m_ports.preferences.value(keys::historyRetention));
}

bool HistoryStore::isCurrent(const QString& path) const
{
    return m_writing || (m_stamp.size >= 0 && m_stamp == stampOf(path));
}

void HistoryStore::adopt(Loaded loaded)
{
    m_records = std::move(loaded.history.records);
    m_oldest = loaded.oldest;
    m_mended = loaded.history.changed;
    m_stamp = loaded.readable ? loaded.stamp : Stamp();
}

void HistoryStore::startWriting()
{
    m_writing = true;
    m_writeAgain = false;
    const auto written = std::make_shared<Written>();
    const QString path = historyFileURL();
    m_ports.backgroundQueue.run(
        [path, records = m_records, written] { *written = store(path, records); },
        m_guard.bind([this, written] {
            m_writing = false;
            m_stamp = written->stamp;
            if (m_writeAgain)
                startWriting();
            else if (!written->succeeded)
                qCWarning(log::history) << "The history could not be written";
        }));
}

HistoryStore::Stamp HistoryStore::stampOf(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

HistoryStore::Loaded HistoryStore::load(const QString& path)
{
    Loaded loaded;
    loaded.stamp = stampOf(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return loaded;
    std::optional<ParsedHistory> history = parseHistory(file.readAll());
    if (!history)
        return loaded;
    loaded.readable = true;
    loaded.oldest = oldestOf(history->records);
    loaded.history = *std::move(history);
    return loaded;
}

HistoryStore::Written HistoryStore::store(const QString& path, const HistoryRecords& records)
{
    Written written;
    written.succeeded = replaceFile(path, [&](QSaveFile& file) {
        return writeHistory(
            records, [&](const QByteArray& piece) { return file.write(piece) == piece.size(); });
    });
    if (written.succeeded)
        written.stamp = stampOf(path);
    return written;
}

} // namespace tavrin
