#pragma once

#include <chrono>
#include <memory>
#include <sys/types.h>

namespace bench {

using Moment = std::chrono::steady_clock::time_point;

/// The moments at which a program's status item and its first window were on the screen.
struct Appearance {
    Moment statusItem;
    Moment window;
};

/// The desktop as it sees a program start: it holds the place of the panel that takes status items
/// in, and watches the window manager's list of windows. One per display.
class Desktop {
public:
    /// Connects to the display of $DISPLAY. Throws std::runtime_error when there is none, or when
    /// another panel runs already.
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// Waits until process @p pid shows both; ends the program with a message when it does not
    /// within ten seconds.
    Appearance awaitAppearance(pid_t pid);

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

} // namespace bench
