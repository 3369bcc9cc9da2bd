#include "history/HistoryStore.h"

#include "base/Log.h"
#include "history/HistoryFile.h"
#include "history/HistoryRecordTexts.h"
#include "history/HistoryRetention.h"
#include "history/PortableJson.h"
#include "platform/BackgroundQueue.h"
#include "platform/Clock.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

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

HistoryRecord recordOf(const NewHistoryRecord& result, Seconds now)
{
    QJsonObject object{
        {u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
        {u"timestamp"_s, now.count()},
        {u"transcript"_s, result.transcript},
        {u"finalText"_s, result.finalText},
        {u"delivery"_s,
            result.delivery.isNull() ? texts::keptOnClipboard.toString() : result.delivery},
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

qint64 HistoryStore::historyFileSize()
{
    return m_writing ? writtenSize(m_records) : QFileInfo(historyFileURL()).size();
}

void HistoryStore::migrate(const QString& path)
{
    const QString old =
        m_ports.systemInfo.applicationSupportDirectory() + u"/Sorvel/"_s + historyFileName();
    if (QFile::copy(old, path)) {
        QFile::setPermissions(path, privateFile);
        return;
    }
    const QVariantList legacy = valueOf(m_ports.preferences, keys::transcriptionHistory);
    const bool isLegacy = !legacy.isEmpty();
    const QByteArray content =
        isLegacy ? portableJson(QJsonDocument(QJsonArray::fromVariantList(legacy))) : "[]"_ba;
    const bool written =
        replaceFile(path, [&](QSaveFile& file) { return file.write(content) == content.size(); });
    if (written && isLegacy)
        m_ports.preferences.remove(keys::transcriptionHistory);
}

HistoryRecords HistoryStore::historyRecords()
{
    const QString path = historyFileURL();
    if (!isCurrent(path))
        adopt(loadHistory(path));
    const double cutoff = retentionCutoff(retention(), m_ports.clock.sinceEpoch());
    if (!m_oldestUnreadable || *m_oldestUnreadable < cutoff)
        m_oldestUnreadable = removeUnreadableFiles(path, cutoff);
    bool changed = std::exchange(m_mended, false);
    if (cutoff > 0 && m_oldest < cutoff)
        changed = pruneHistory(m_records, cutoff) || changed;
    if (changed)
        write(HistoryRecords(m_records));
    return m_records;
}

bool HistoryStore::writeHistoryRecords(const HistoryRecords& records)
{
    m_replacesAll = true;
    m_unreadable = false;
    m_pending = {};
    return write(records);
}

bool HistoryStore::write(const HistoryRecords& records)
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
        forget();
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
    const HistoryRecord record = recordOf(result, m_ports.clock.sinceEpoch());
    records.prepend(record);
    m_pending.added.prepend(record);
    write(records);
    if (m_saved)
        m_saved();
}

void HistoryStore::removeHistoryRecord(const QString& id)
{
    HistoryRecords records = historyRecords();
    records.removeIf([&](const HistoryRecord& record) { return record.id() == id; });
    m_pending.removed.insert(id);
    write(records);
}

void HistoryStore::clear()
{
    writeHistoryRecords({});
    m_oldestUnreadable =
        removeUnreadableFiles(historyFileURL(), std::numeric_limits<double>::infinity());
}

std::optional<HistoryRecord> HistoryStore::historyRecordWithID(const QString& id)
{
    const HistoryRecords records = historyRecords();
    const auto found = std::ranges::find(records, id, &HistoryRecord::id);
    return found == records.end() ? std::nullopt : std::optional(*found);
}

void HistoryStore::warmUp()
{
    whenRead([] {});
}

void HistoryStore::whenRead(std::function<void()> done)
{
    const QString path = historyFileURL();
    if (isCurrent(path))
        return done();
    m_readers.push_back(std::move(done));
    if (m_readers.size() > 1)
        return;
    const auto loaded = std::make_shared<LoadedHistory>();
    m_ports.backgroundQueue.run([path, loaded] { *loaded = loadHistory(path); },
        m_guard.bind([this, path, loaded] { finishReading(path, *loaded); }));
}

void HistoryStore::finishReading(const QString& path, LoadedHistory& loaded)
{
    if (!isCurrent(path) && loaded.stamp == stampOf(path))
        adopt(std::move(loaded));
    for (const auto& done : std::exchange(m_readers, {}))
        done();
}

void HistoryStore::flush()
{
    while (m_writing)
        m_ports.backgroundQueue.drain();
}

QString HistoryStore::retention() const
{
    return valueOf(m_ports.preferences, keys::historyRetention);
}

bool HistoryStore::isCurrent(const QString& path) const
{
    return m_writing || (m_stamp && !m_unreadable && *m_stamp == stampOf(path));
}

void HistoryStore::adopt(LoadedHistory loaded)
{
    m_records = std::move(loaded.history.records);
    m_oldest = loaded.oldest;
    m_mended = loaded.history.changed;
    m_stamp = loaded.stamp;
    m_unreadable = !loaded.readable;
    m_oldestUnreadable.reset();
}

void HistoryStore::forget()
{
    m_stamp.reset();
    m_pending = {};
}

void HistoryStore::startWriting()
{
    m_writing = true;
    m_writeAgain = false;
    const bool replacesAll = std::exchange(m_replacesAll, false);
    const HistoryWrite write{m_records, replacesAll ? std::nullopt : m_stamp, m_unreadable};
    const auto written = std::make_shared<WrittenHistory>();
    m_ports.backgroundQueue.run(
        [path = historyFileURL(), write, written] { *written = storeHistory(path, write); },
        m_guard.bind([this, written, begun = std::exchange(m_pending, {})] {
            m_writing = false;
            finishWriting(*written, begun);
        }));
}

void HistoryStore::finishWriting(WrittenHistory& written, const Changes& begun)
{
    m_oldestUnreadable.reset();
    if (written.outcome == WrittenHistory::Outcome::Written) {
        m_stamp = written.stamp;
        m_unreadable = false;
    } else if (!m_replacesAll) {
        m_pending.added.append(begun.added);
        m_pending.removed.unite(begun.removed);
    }
    if (written.outcome == WrittenHistory::Outcome::Edited && !m_replacesAll) {
        merge(std::move(written.found));
    } else if (m_writeAgain) {
        startWriting();
    } else if (written.outcome == WrittenHistory::Outcome::Failed) {
        qCWarning(log::history) << "The history could not be written";
        forget();
    }
}

void HistoryStore::merge(LoadedHistory found)
{
    const bool vanished = found.stamp == FileStamp();
    if (!found.readable && !vanished) {
        m_stamp = found.stamp;
        m_unreadable = true;
        startWriting();
        return;
    }
    found.readable = true;
    adopt(std::move(found));
    if (m_pending.added.isEmpty() && m_pending.removed.isEmpty())
        return;
    HistoryRecords records = m_pending.added + m_records;
    records.removeIf(
        [&](const HistoryRecord& record) { return m_pending.removed.contains(record.id()); });
    write(records);
}

} // namespace tavrin
