#include "platform/linux/libraries/SharedLibrary.h"

#include "base/Log.h"

#include <dlfcn.h>

namespace tavrin {

bool SharedLibrary::load() const
{
    if (m_handle.load(std::memory_order_acquire) != nullptr)
        return true;
    // When two threads come here together both get the same handle.
    void* const handle = dlopen(m_file, RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr)
        qCWarning(log::platform, "%s is missing.", m_file);
    m_handle.store(handle, std::memory_order_release);
    return handle != nullptr;
}

void* SharedLibrary::resolve(const char* name) const
{
    return load() ? dlsym(m_handle.load(std::memory_order_acquire), name) : nullptr;
}

} // namespace tavrin
