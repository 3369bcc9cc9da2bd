#include "platform/linux/process/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::array<int, 3> handled{SIGTERM, SIGINT, SIGHUP};

// The end of the pipe that the handler writes to; -1 while nobody listens.
std::atomic<int> wakeUp = -1;

// Whether a signal came before that the main thread may not have seen.
std::atomic<bool> askedBefore = false;

void onSignal(int number)
{
    const int before = errno;
    if (askedBefore.exchange(true)) {
        if (number == SIGHUP)
            return;

        // The main thread hangs, or it would have given the signals back their usual meaning.
        struct sigaction usual { };

        usual.sa_handler = SIG_DFL;
        ::sigaction(number, &usual, nullptr);
        ::raise(number);
        errno = before;
        return;
    }
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(wakeUp.load(), &byte, 1);
    errno = before;
}

void setHandler(void (*handler)(int), int flags)
{
    struct sigaction action { };

    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    for (const int number : handled)
        ::sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : m_terminate(std::move(terminate))
{
    if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // The signals keep their usual meaning.
    wakeUp = m_pipe[1];
    askedBefore = false;
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        m_notifier->setEnabled(false);
        setHandler(SIG_DFL, 0); // Whoever asks twice means it.
        ::signal(SIGHUP, SIG_IGN);
        m_terminate();
    });
    setHandler(onSignal, SA_RESTART);
}

TerminationSignals::~TerminationSignals()
{
    setHandler(SIG_DFL, 0);
    wakeUp = -1;
    for (const int end : m_pipe) {
        if (end >= 0)
            ::close(end);
    }
}

} // namespace tavrin
