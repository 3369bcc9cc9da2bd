#include "platform/linux/recognizer/onnx/SherpaLibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <memory>
#include <mutex>
#include <string_view>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

// Tried with models of every kind. The next one after these lengthens the structures; those before
// lack the option that SessionOptions sets.
constexpr std::array<std::string_view, 4> knownVersions{"1.13.5", "1.13.6", "1.13.7", "1.13.8"};

constexpr qsizetype longestMessage = 300;

struct Close {
    void operator()(void* handle) const { dlclose(handle); }
};

using Handle = std::unique_ptr<void, Close>;

QString namesOfKnownVersions()
{
    QStringList names;
    for (const std::string_view version : knownVersions)
        names.append(QString::fromLatin1(version.data(), static_cast<qsizetype>(version.size())));
    return names.join(u", "_s);
}

QString libraryIn(const QString& folder)
{
    return QDir(folder).filePath(u"libsherpa-onnx-c-api.so"_s);
}

OnnxResult<void> checkFiles(const QString& folder)
{
    if (folder.isEmpty() || !QFileInfo(libraryIn(folder)).isFile())
        return onnxFailure(OnnxFault::NoLibrary, libraryIn(folder));
    // The system's search would take any other one, and they belong together.
    const QString partner = QDir(folder).filePath(u"libonnxruntime.so"_s);
    if (!QFileInfo(partner).isFile())
        return onnxFailure(OnnxFault::NoPartner, partner);
    return {};
}

OnnxResult<Handle> openFile(const QString& path)
{
    Handle handle(dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL));
    if (handle)
        return handle;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): each thread has a message of its own here.
    const char* const message = dlerror();
    return onnxFailure(
        OnnxFault::LibraryBroken, QString::fromLocal8Bit(message).left(longestMessage));
}

OnnxResult<void> checkVersion(void* handle)
{
    constexpr const char* name = "SherpaOnnxGetVersionStr";
    const auto versionText = reinterpret_cast<const char* (*)()>(dlsym(handle, name));
    if (versionText == nullptr)
        return onnxFailure(OnnxFault::LibraryIncomplete, QString::fromLatin1(name));
    const std::string_view version = versionText();
    if (std::ranges::find(knownVersions, version) != knownVersions.end())
        return {};
    return onnxFailure(OnnxFault::LibraryVersion,
        u"%1 (%2)"_s.arg(QString::fromUtf8(version.data(), static_cast<qsizetype>(version.size()))
                             .left(longestMessage),
            namesOfKnownVersions()));
}

/// Looks functions up until one is missing.
class Resolver {
public:
    explicit Resolver(void* handle)
        : m_handle(handle)
    {
    }

    template <class Function>
    Resolver& operator()(Function& function, const char* name)
    {
        if (m_missing == nullptr) {
            function = reinterpret_cast<Function>(dlsym(m_handle, name));
            if (function == nullptr)
                m_missing = name;
        }
        return *this;
    }

    [[nodiscard]] const char* missing() const { return m_missing; }

private:
    void* m_handle;
    const char* m_missing = nullptr;
};

} // namespace

OnnxResult<const SherpaLibrary*> SherpaLibrary::open(const QString& folder)
{
    static std::mutex mutex;
    static const SherpaLibrary* opened = nullptr;
    static QString openedFolder;
    const std::lock_guard lock(mutex);
    if (const auto checked = checkFiles(folder); !checked)
        return tl::unexpected(checked.error());
    const QString canonical = QDir(folder).canonicalPath();
    if (opened != nullptr) {
        if (canonical != openedFolder)
            return onnxFailure(OnnxFault::OtherLibrary, openedFolder);
        return opened;
    }
    OnnxResult<const SherpaLibrary*> library = load(folder);
    if (library) {
        opened = *library;
        openedFolder = canonical;
    }
    return library;
}

OnnxResult<const SherpaLibrary*> SherpaLibrary::load(const QString& folder)
{
    OnnxResult<Handle> handle = openFile(libraryIn(folder));
    if (!handle)
        return tl::unexpected(handle.error());
    if (const auto checked = checkVersion(handle->get()); !checked)
        return tl::unexpected(checked.error());
    std::unique_ptr<SherpaLibrary> library(new SherpaLibrary);
    if (const auto resolved = library->resolve(handle->get()); !resolved)
        return tl::unexpected(resolved.error());
    [[maybe_unused]] void* const stays = handle->release();
    return library.release();
}

OnnxResult<void> SherpaLibrary::resolve(void* handle)
{
    Resolver find(handle);
    find(versionText, "SherpaOnnxGetVersionStr");
    find(createOnlineRecognizer, "SherpaOnnxCreateOnlineRecognizer");
    find(destroyOnlineRecognizer, "SherpaOnnxDestroyOnlineRecognizer");
    find(createOnlineStream, "SherpaOnnxCreateOnlineStream");
    find(createOnlineStreamWithHotwords, "SherpaOnnxCreateOnlineStreamWithHotwords");
    find(destroyOnlineStream, "SherpaOnnxDestroyOnlineStream");
    find(acceptOnline, "SherpaOnnxOnlineStreamAcceptWaveform");
    find(isOnlineReady, "SherpaOnnxIsOnlineStreamReady");
    find(decodeOnline, "SherpaOnnxDecodeOnlineStream");
    find(onlineResult, "SherpaOnnxGetOnlineStreamResult");
    find(destroyOnlineResult, "SherpaOnnxDestroyOnlineRecognizerResult");
    find(isOnlineEndpoint, "SherpaOnnxOnlineStreamIsEndpoint");
    find(resetOnline, "SherpaOnnxOnlineStreamReset");
    find(finishOnlineInput, "SherpaOnnxOnlineStreamInputFinished");
    find(createOfflineRecognizer, "SherpaOnnxCreateOfflineRecognizer");
    find(destroyOfflineRecognizer, "SherpaOnnxDestroyOfflineRecognizer");
    find(createOfflineStream, "SherpaOnnxCreateOfflineStream");
    find(destroyOfflineStream, "SherpaOnnxDestroyOfflineStream");
    find(acceptOffline, "SherpaOnnxAcceptWaveformOffline");
    find(decodeOffline, "SherpaOnnxDecodeOfflineStream");
    find(offlineResult, "SherpaOnnxGetOfflineStreamResult");
    find(destroyOfflineResult, "SherpaOnnxDestroyOfflineRecognizerResult");
    if (find.missing() != nullptr)
        return onnxFailure(OnnxFault::LibraryIncomplete, QString::fromLatin1(find.missing()));
    return {};
}

} // namespace tavrin
