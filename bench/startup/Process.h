#pragma once

#include <string>
#include <sys/types.h>

namespace bench {

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

    /// How often its threads, all together, have woken from waiting.
    [[nodiscard]] long wakeUps() const;

    /// In milliseconds, all threads together.
    [[nodiscard]] double cpuTime() const;

private:
    pid_t m_pid = -1;
};

} // namespace bench
