#include "platform/linux/preferences/PreferencesFile.h"

#include "base/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cerrno>
#include <sys/stat.h>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// Two changes within one tick of the kernel's clock leave the same time stamp. What was read this
// soon after a change is read again.
constexpr auto clockTick = 50ms;

constexpr qint64 largestFile = 64LL * 1024 * 1024;

std::chrono::nanoseconds nanoseconds(const timespec& time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

PreferencesFile::PreferencesFile(QString path)
    : m_path(std::move(path))
{
}

const QVariantMap& PreferencesFile::members()
{
    refresh();
    if (m_condition == Condition::Broken && !m_everRead)
        setAside();
    m_everRead = true;
    return m_members;
}

PreferencesFile::Outcome PreferencesFile::update(const Changes& changes, bool wait)
{
    refresh();
    if (m_condition == Condition::Broken) {
        if (wait && m_stamp && isYoung(*m_stamp, patience))
            return Outcome::Busy;
        if (!setAside())
            return Outcome::Failed;
    }
    if (m_condition == Condition::Unreadable)
        return Outcome::Failed;
    QVariantMap members = m_members;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change.value())
            members.insert(change.key(), *change.value());
        else
            members.remove(change.key());
    }
    return write(members) ? Outcome::Written : Outcome::Failed;
}

void PreferencesFile::refresh()
{
    struct stat status { };

    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0) {
        const int reason = errno;
        m_stamp.reset();
        if (reason == ENOENT || reason == ENOTDIR) {
            if (m_condition == Condition::Good)
                m_members.clear(); // Somebody removed the file: back to the defaults.
            m_condition = Condition::Absent;
        } else {
            m_condition = Condition::Unreadable;
            complain(m_readingFailed, QStringLiteral("cannot be looked at (error %1)").arg(reason));
        }
        return;
    }
    const Stamp stamp{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
        nanoseconds(status.st_ctim)};
    if (m_stamp != stamp || !m_settled)
        read(stamp);
}

void PreferencesFile::read(const Stamp& stamp)
{
    m_stamp = stamp;
    m_settled = !isYoung(stamp, clockTick);
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_condition = Condition::Unreadable;
        complain(m_readingFailed, QStringLiteral("cannot be opened"));
        return;
    }
    const QByteArray text = file.read(largestFile + 1);
    QJsonParseError error{};
    const QJsonDocument document =
        text.size() > largestFile ? QJsonDocument() : QJsonDocument::fromJson(text, &error);
    if (!document.isObject()) {
        m_condition = Condition::Broken;
        complain(m_readingFailed,
            QStringLiteral(
                "is no object of JSON, or too large; reading ended at byte %1 (error %2)")
                .arg(error.offset)
                .arg(error.error));
        return;
    }
    m_condition = Condition::Good;
    m_readingFailed = false;
    m_members = document.object().toVariantMap();
}

bool PreferencesFile::setAside()
{
    const QFileInfo info(m_path);
    const QString date = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString number = attempt == 1 ? QString() : QStringLiteral("-%1").arg(attempt);
        const QString name =
            QStringLiteral("%1-broken-%2%3.json").arg(info.completeBaseName(), date, number);
        if (info.dir().exists(name))
            continue;
        if (!QFile::rename(m_path, info.dir().filePath(name)))
            break;
        qCWarning(log::platform).noquote() << "The settings file was set aside as" << name;
        m_condition = Condition::Absent;
        m_stamp.reset();
        return true;
    }
    complain(m_writingFailed, QStringLiteral("cannot be set aside"));
    return false;
}

bool PreferencesFile::write(const QVariantMap& members)
{
    QSaveFile file(m_path);
    const QByteArray text = QJsonDocument(QJsonObject::fromVariantMap(members)).toJson();
    const bool written = ensureFolder() && file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        && file.write(text) == text.size() && file.commit();
    m_stamp.reset();
    if (!written) {
        complain(
            m_writingFailed, QStringLiteral("cannot be written; changes hold until Tavrin quits"));
        return false;
    }
    m_members = members;
    m_condition = Condition::Good;
    m_writingFailed = false;
    return true;
}

bool PreferencesFile::ensureFolder() const
{
    const QString folder = QFileInfo(m_path).path();
    if (!QDir().mkpath(folder))
        return false;
    constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if ((QFile::permissions(folder) & others) != 0)
        QFile::setPermissions(folder, ownerOnly);
    return true;
}

void PreferencesFile::complain(bool& complained, const QString& problem)
{
    if (!complained)
        qCWarning(log::platform).noquote() << "The settings file" << m_path << problem;
    complained = true;
}

bool PreferencesFile::isYoung(const Stamp& stamp, std::chrono::nanoseconds age)
{
    const std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    // A stamp from the future (the clock was set back) is an old one.
    return now - stamp.modified < age && stamp.modified - now < age;
}

} // namespace tavrin
