#include "audio/RecordingFile.h"

#include "base/Log.h"
#include "platform/BackgroundQueue.h"
#include "platform/SystemInfo.h"

#include <QDir>
#include <QLockFile>
#include <QUuid>

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString lockSuffix = QStringLiteral(".lock");

QString recordingName(const QUuid& id)
{
    return u"tavrin-%1.m4a"_s.arg(id.toString(QUuid::WithoutBraces).toUpper());
}

/// Whether a recording of ours may be called so: what a person named is nobody's leavings.
bool isRecordingName(const QString& name)
{
    const QString digits = name.section(u'-', 1).section(u'.', 0, 0);
    const QUuid id = QUuid::fromString(digits);
    return !id.isNull() && name == recordingName(id);
}

/// Locks of dead processes give way at once; those of living ones never do, however old.
std::unique_ptr<QLockFile> claimOf(const QString& recording)
{
    auto claim = std::make_unique<QLockFile>(recording + lockSuffix);
    claim->setStaleLockTime(0);
    return claim;
}

void take(QLockFile& claim)
{
    if (!claim.tryLock())
        qCWarning(log::audio) << "cannot claim a recording file, error" << claim.error();
}

} // namespace

RecordingFile::RecordingFile(const SystemInfo& systemInfo, BackgroundQueue& background)
    : m_audioURL(systemInfo.temporaryDirectory() + u'/' + recordingName(QUuid::createUuid()))
    , m_claim(claimOf(m_audioURL))
{
    background.run([claim = m_claim] { take(*claim); }, [] {});
}

RecordingFile::~RecordingFile()
{
    remove();
}

RecordingFile::RecordingFile(RecordingFile&& other) noexcept
    : m_audioURL(std::exchange(other.m_audioURL, {}))
    , m_claim(std::move(other.m_claim))
{
}

RecordingFile& RecordingFile::operator=(RecordingFile&& other) noexcept
{
    if (this != &other) {
        remove();
        m_audioURL = std::exchange(other.m_audioURL, {});
        m_claim = std::move(other.m_claim);
    }
    return *this;
}

void RecordingFile::remove()
{
    if (m_audioURL.isEmpty())
        return;
    if (QFile::exists(m_audioURL) && !QFile::remove(m_audioURL))
        qCWarning(log::audio) << "cannot delete a recording";
    m_audioURL.clear();
    m_claim.reset(); // Last: until here the recording counts as owned.
}

void removeAbandonedRecordings(const SystemInfo& systemInfo)
{
    const QDir folder(systemInfo.temporaryDirectory());
    // A process that died before its recorder made the file leaves the lock alone.
    const QStringList names =
        folder.entryList(QDir::Files | QDir::System | QDir::Hidden | QDir::Writable);
    for (QString name : names) {
        if (name.endsWith(lockSuffix))
            name.chop(lockSuffix.size());
        if (!isRecordingName(name))
            continue;
        const QString recording = folder.filePath(name);
        if (const auto claim = claimOf(recording); claim->tryLock())
            QFile::remove(recording);
    }
}

} // namespace tavrin
