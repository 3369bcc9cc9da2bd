#include "Process.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

/// The number behind "key:" in a file of the kernel's such lines.
long numberIn(const std::filesystem::path& file, const std::string& key)
{
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key + ":"))
            return std::strtol(line.c_str() + key.size() + 1, nullptr, 10);
    }
    return 0;
}

std::filesystem::path folderOf(pid_t pid)
{
    return std::filesystem::path("/proc") / std::to_string(pid);
}

} // namespace

Process::Process(const std::string& path)
{
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = path;
    std::array<char*, 2> arguments{name.data(), nullptr};
    const int error =
        posix_spawn(&m_pid, path.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start " + path);
}

Process::~Process()
{
    kill(m_pid, SIGTERM);
    int status = 0;
    waitpid(m_pid, &status, 0);
}

double Process::residentMemory() const
{
    return static_cast<double>(numberIn(folderOf(m_pid) / "status", "VmRSS")) / 1024;
}

std::map<std::string, ThreadUse> Process::threads() const
{
    std::map<std::string, ThreadUse> threads;
    std::error_code gone;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(m_pid) / "task", gone)) {
        // The scheduler's own count, in nanoseconds: the ticks of "stat" are too coarse for an idle
        // program.
        std::ifstream schedule(thread.path() / "schedstat");
        double nanoseconds = 0;
        schedule >> nanoseconds;
        threads[thread.path().filename()] = {
            numberIn(thread.path() / "status", "voluntary_ctxt_switches"), nanoseconds / 1e6};
    }
    return threads;
}

ThreadUse usedSince(
    const std::map<std::string, ThreadUse>& before, const std::map<std::string, ThreadUse>& now)
{
    ThreadUse used;
    for (const auto& [thread, use] : now) {
        const auto earlier = before.find(thread);
        const ThreadUse start = earlier == before.end() ? ThreadUse{} : earlier->second;
        used.wakeUps += use.wakeUps - start.wakeUps;
        used.cpuTime += use.cpuTime - start.cpuTime;
    }
    return used;
}

} // namespace bench
