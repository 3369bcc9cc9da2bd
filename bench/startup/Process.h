#pragma once

#include <map>
#include <string>
#include <sys/types.h>

namespace bench {

struct ThreadUse {
    long wakeUps = 0; ///< From waiting.
    double cpuTime = 0; ///< In milliseconds.
};

/// What the threads of @p now have used together since @p before. One that has ended took its count
/// along.
[[nodiscard]] ThreadUse usedSince(
    const std::map<std::string, ThreadUse>& before, const std::map<std::string, ThreadUse>& now);

/// A program that runs until its owner goes. Figures come from the kernel; each is 0 once it has
/// ended.
class Process {
public:
    /// Starts @p path without arguments, its output thrown away; throws std::runtime_error when it
    /// cannot.
    explicit Process(const std::string& path);

    /// Asks it to end, and waits until it has.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] pid_t pid() const { return m_pid; }

    /// In MB (2^20 bytes).
    [[nodiscard]] double residentMemory() const;

    /// What each of its threads has used so far, by the kernel's number.
    [[nodiscard]] std::map<std::string, ThreadUse> threads() const;

private:
    pid_t m_pid = -1;
};

} // namespace bench
