#include "platform/linux/recognizer/onnx/SherpaHandle.h"

#include "base/Log.h"

namespace tavrin {

void logSherpaException(const char* what)
{
    constexpr qsizetype longest = 200;
    qCWarning(log::speech).noquote()
        << "sherpa-onnx threw:" << QString::fromUtf8(what).left(longest).simplified();
}

} // namespace tavrin
