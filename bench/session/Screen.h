#pragma once

#include <memory>
#include <vector>

namespace bench {

/// The X server as a person meets it: presses keys, sees a place of the screen change, and asks a
/// program again and again whether it still answers, as window managers do.
///
/// Reports "pressed" before a key goes down, and "changed" when the place no longer looks as it did
/// then. Belongs to the thread of GLib's default main loop.
class Screen {
public:
    /// Throws std::runtime_error without a display.
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Looks at the pixel (@p x, @p y) from now on, and asks the program of @p window.
    void watch(unsigned long window, int x, int y);

    /// Presses the keys of the codes one after the other, and releases them.
    void press(const std::vector<unsigned>& codes);

    struct Waits {
        double program = 0; ///< The longest that the program has let a question wait.
        double machine = 0; ///< The latest that a question was: what the machine itself does to us.
    };

    /// In milliseconds, since this was asked last.
    [[nodiscard]] Waits longestWaits();

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

} // namespace bench
