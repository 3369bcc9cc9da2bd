#include "platform/linux/speech/onnx/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

bool openRegularFile(const QString& path, QFile& file)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return false;
    }
    if (file.open(
            descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
        return true;
    close(descriptor);
    return false;
}

} // namespace tavrin
