#pragma once

#include <QStringList>

#include <sys/types.h>

namespace tavrin::testing {

/// A program that a desktop test starts; ended, by its id, when this goes away.
class ChildProcess {
public:
    /// Starts @p program, looked up in PATH. Its output goes to that of the test.
    explicit ChildProcess(const QString& program, const QStringList& arguments = {});
    ~ChildProcess();

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const { return m_id; }

    /// Whether it was started and has not ended.
    [[nodiscard]] bool isRunning();

    /// Waits for its end: its exit status, or -1 when it was not started or was killed.
    int wait();

    /// Stops it in its tracks, as a hung program; resume() lets it go on.
    void suspend() const;
    void resume() const;

    /// Ends it at once and waits for that.
    void kill();

private:
    pid_t m_id = -1;
};

} // namespace tavrin::testing
