#pragma once

#include <csignal>
#include <sys/resource.h>

namespace tavrin::testing {

/// While it lives, files of this process cannot grow beyond a size: writing fails as on a full
/// disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t largestFile)
    {
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limited{largestFile, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        static_cast<void>(std::signal(SIGXFSZ, m_signal));
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    using Handler = void (*)(int);

    rlimit m_before{};
    Handler m_signal = nullptr;
};

} // namespace tavrin::testing
