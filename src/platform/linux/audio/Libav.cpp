#include "platform/linux/audio/Libav.h"

#include <array>
#include <dlfcn.h>
#include <string>

namespace tavrin::libav {
namespace {

struct Name {
    const char* stem;
    int version;
};

// In the order of Library. The number is that of the binary interface the headers describe.
constexpr std::array names{
    Name{"libavcodec.so.", LIBAVCODEC_VERSION_MAJOR},
    Name{"libavformat.so.", LIBAVFORMAT_VERSION_MAJOR},
    Name{"libavutil.so.", LIBAVUTIL_VERSION_MAJOR},
    Name{"libswresample.so.", LIBSWRESAMPLE_VERSION_MAJOR},
};

using Handles = std::array<void*, names.size()>;

/// Never unloaded: the libraries keep state for the whole process.
const Handles& handles()
{
    static const Handles opened = [] {
        Handles result{};
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string file = names[i].stem + std::to_string(names[i].version);
            result[i] = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
        }
        return result;
    }();
    return opened;
}

} // namespace

void* resolve(Library library, const char* name)
{
    void* handle = handles()[static_cast<std::size_t>(library)];
    return handle ? dlsym(handle, name) : nullptr;
}

bool load()
{
    for (void* handle : handles()) {
        if (!handle)
            return false;
    }
    return true;
}

} // namespace tavrin::libav
