#pragma once

#include <csignal>
#include <sys/resource.h>

namespace tavrin::testing {

/// As long as it lives no file of this process grows beyond so many bytes: writes fail as on a
/// full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(long long bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        static_cast<void>(std::signal(SIGXFSZ, m_handler));
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    using Handler = void (*)(int);

    Handler m_handler;
    rlimit m_before{};
};

} // namespace tavrin::testing
