#include "audio/RecordingFile.h"

#include "base/Log.h"
#include "platform/SystemInfo.h"

#include <QDir>
#include <QLockFile>
#include <QUuid>

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString lockSuffix = QStringLiteral(".lock");

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

RecordingFile::RecordingFile(const SystemInfo& systemInfo)
    : m_audioURL(u"%1/tavrin-%2.m4a"_s.arg(systemInfo.temporaryDirectory(),
        QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()))
    , m_claim(claimOf(m_audioURL))
    , m_claiming(std::async(std::launch::async, [&claim = *m_claim] { take(claim); }))
{
}

RecordingFile::~RecordingFile()
{
    remove();
}

RecordingFile::RecordingFile(RecordingFile&& other) noexcept
    : m_audioURL(std::exchange(other.m_audioURL, {}))
    , m_claim(std::move(other.m_claim))
    , m_claiming(std::move(other.m_claiming))
{
}

RecordingFile& RecordingFile::operator=(RecordingFile&& other) noexcept
{
    if (this != &other) {
        remove();
        m_audioURL = std::exchange(other.m_audioURL, {});
        m_claim = std::move(other.m_claim);
        m_claiming = std::move(other.m_claiming);
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
    m_claiming.wait();
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
        if (!name.startsWith("tavrin-"_L1) || !name.endsWith(".m4a"_L1))
            continue;
        const QString recording = folder.filePath(name);
        if (const auto claim = claimOf(recording); claim->tryLock())
            QFile::remove(recording);
    }
}

} // namespace tavrin
