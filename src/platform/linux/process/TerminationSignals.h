#pragma once

#include <QSocketNotifier>

#include <array>
#include <functional>
#include <memory>

namespace tavrin {

/// Turns SIGTERM, SIGINT and SIGHUP into one call on the main thread, so that the program can quit
/// cleanly. A second signal ends the process at once, also while the main thread hangs; but not
/// SIGHUP, which a terminal that closes sends more than once. At most one of these exists at a
/// time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals();

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    std::function<void()> m_terminate;
    std::array<int, 2> m_pipe{-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tavrin
