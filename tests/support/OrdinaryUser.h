#pragma once

#include <QDirIterator>
#include <QFile>
#include <QString>

#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace tavrin::testing {

/// As long as it lives the process is one that permissions bind, also where tests run as root; it
/// owns what lies in one folder. Does nothing for any other user.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const QString& folder)
        : m_wasRoot(geteuid() == 0)
    {
        if (!m_wasRoot)
            return;
        give(folder);
        for (QDirIterator entry(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                 QDirIterator::Subdirectories);
             entry.hasNext();)
            give(entry.next());
        if (seteuid(nobody) != 0)
            std::abort();
    }

    ~OrdinaryUser()
    {
        if (m_wasRoot && seteuid(0) != 0)
            std::abort(); // Everything that follows would fail for a reason of its own.
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t nobody = 65534;

    static void give(const QString& path)
    {
        if (chown(QFile::encodeName(path).constData(), nobody, static_cast<gid_t>(-1)) != 0)
            std::abort();
    }

    bool m_wasRoot;
};

/// As long as it lives nothing can be created, renamed or removed in the folder.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(QString path)
        : m_path(std::move(path))
        , m_before(QFile::permissions(m_path))
    {
        QFile::setPermissions(m_path, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }

    ~ReadOnlyFolder() { QFile::setPermissions(m_path, m_before); }

    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    QString m_path;
    QFileDevice::Permissions m_before;
};

} // namespace tavrin::testing
