#include "platform/linux/recognizer/onnx/SessionOptions.h"

#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace tavrin {

SessionOptions::SessionOptions()
    : m_file(memfd_create("session-options", MFD_CLOEXEC))
{
    constexpr std::string_view options = "SessionConfig.session.intra_op.allow_spinning=0\n";
    if (m_file < 0)
        return;
    const ssize_t written = write(m_file, options.data(), options.size());
    if (written == static_cast<ssize_t>(options.size()))
        return;
    close(m_file);
    m_file = -1;
}

SessionOptions::~SessionOptions()
{
    if (m_file >= 0)
        close(m_file);
}

QByteArray SessionOptions::provider() const
{
    if (m_file < 0)
        return "cpu";
    return "cpu:/proc/self/fd/" + QByteArray::number(m_file);
}

} // namespace tavrin
