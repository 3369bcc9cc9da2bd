#pragma once

#include "platform/linux/recognizer/onnx/SherpaTypes.h"
#include "platform/linux/speech/onnx/OnnxProblem.h"

namespace tavrin {

/// The functions of sherpa-onnx's C library, libsherpa-onnx-c-api.so, which is loaded when it is
/// first asked for and stays: ONNX Runtime keeps threads and state for the whole process.
///
/// Any of them may throw. Those that create return null where the library refuses. It writes what
/// it finds wrong to standard error, and ends the process for what OnnxModel looks for beforehand.
class SherpaLibrary {
public:
    /// The library in @p folder, with libonnxruntime.so, which it was built with, beside it. Only
    /// versions are taken whose structures are known to lie in memory as in SherpaTypes.h. A
    /// process gets one library: once loaded, that of another folder is refused. Any thread.
    [[nodiscard]] static OnnxResult<const SherpaLibrary*> open(const QString& folder);

    const char* (*versionText)() = nullptr;

    const sherpa::OnlineRecognizer* (*createOnlineRecognizer)(
        const sherpa::OnlineConfiguration*) = nullptr;
    void (*destroyOnlineRecognizer)(const sherpa::OnlineRecognizer*) = nullptr;
    const sherpa::OnlineStream* (*createOnlineStream)(const sherpa::OnlineRecognizer*) = nullptr;
    const sherpa::OnlineStream* (*createOnlineStreamWithHotwords)(
        const sherpa::OnlineRecognizer*, const char*) = nullptr;
    void (*destroyOnlineStream)(const sherpa::OnlineStream*) = nullptr;
    void (*acceptOnline)(
        const sherpa::OnlineStream*, std::int32_t rate, const float*, std::int32_t) = nullptr;
    std::int32_t (*isOnlineReady)(
        const sherpa::OnlineRecognizer*, const sherpa::OnlineStream*) = nullptr;
    void (*decodeOnline)(const sherpa::OnlineRecognizer*, const sherpa::OnlineStream*) = nullptr;
    const sherpa::Result* (*onlineResult)(
        const sherpa::OnlineRecognizer*, const sherpa::OnlineStream*) = nullptr;
    void (*destroyOnlineResult)(const sherpa::Result*) = nullptr;
    std::int32_t (*isOnlineEndpoint)(
        const sherpa::OnlineRecognizer*, const sherpa::OnlineStream*) = nullptr;
    void (*resetOnline)(const sherpa::OnlineRecognizer*, const sherpa::OnlineStream*) = nullptr;
    void (*finishOnlineInput)(const sherpa::OnlineStream*) = nullptr;

    const sherpa::OfflineRecognizer* (*createOfflineRecognizer)(
        const sherpa::OfflineConfiguration*) = nullptr;
    void (*destroyOfflineRecognizer)(const sherpa::OfflineRecognizer*) = nullptr;
    const sherpa::OfflineStream* (*createOfflineStream)(const sherpa::OfflineRecognizer*) = nullptr;
    void (*destroyOfflineStream)(const sherpa::OfflineStream*) = nullptr;
    void (*acceptOffline)(
        const sherpa::OfflineStream*, std::int32_t rate, const float*, std::int32_t) = nullptr;
    void (*decodeOffline)(const sherpa::OfflineRecognizer*, const sherpa::OfflineStream*) = nullptr;
    const sherpa::Result* (*offlineResult)(const sherpa::OfflineStream*) = nullptr;
    void (*destroyOfflineResult)(const sherpa::Result*) = nullptr;

private:
    SherpaLibrary() = default;

    [[nodiscard]] static OnnxResult<const SherpaLibrary*> load(const QString& folder);
    [[nodiscard]] OnnxResult<void> resolve(void* handle);
};

} // namespace tavrin
