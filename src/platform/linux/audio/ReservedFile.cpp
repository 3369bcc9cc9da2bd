#include "platform/linux/audio/ReservedFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::int64_t step = 131'072; // Bytes: some twenty seconds of sound for one call.

} // namespace

ReservedFile::ReservedFile(const QString& path)
    : m_descriptor(::open(QFile::encodeName(path).constData(),
        O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR))
{
    if (m_descriptor >= 0)
        fchmod(m_descriptor, S_IRUSR | S_IWUSR); // It may have been there, open to others.
}

ReservedFile::~ReservedFile()
{
    if (m_descriptor < 0)
        return;
    [[maybe_unused]] const int truncated = ftruncate(m_descriptor, m_size);
    ::close(m_descriptor);
}

bool ReservedFile::reserve(std::int64_t size)
{
    if (size <= m_reserved)
        return true;
    const std::int64_t wanted = (size + step - 1) / step * step;
    // Returns the error and leaves errno alone; EINTR has changed nothing.
    int error = EINTR;
    while (error == EINTR)
        error = posix_fallocate(m_descriptor, 0, wanted);
    if (error == 0)
        m_reserved = wanted;
    return error == 0;
}

bool ReservedFile::write(const std::uint8_t* bytes, int count)
{
    while (count > 0) {
        const ssize_t written =
            pwrite(m_descriptor, bytes, static_cast<std::size_t>(count), m_position);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        count -= static_cast<int>(written);
        m_position += written;
        m_size = std::max(m_size, m_position);
    }
    return true;
}

} // namespace tavrin
