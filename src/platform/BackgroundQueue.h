#pragma once

#include <functional>

namespace tavrin {

/// Runs work that would keep the main thread busy for too long, one piece after another, on a
/// thread of its own. Main thread only.
class BackgroundQueue {
public:
    using Task = std::function<void()>;

    virtual ~BackgroundQueue() = default;

    /// Runs @p work off the main thread, then @p done on the main thread. What the two share is
    /// theirs alone until then. Work that still waits when the queue is destroyed is dropped.
    virtual void run(Task work, Task done) = 0;

    /// Waits until everything given to run() is done, and calls each `done`. For the end of the
    /// program.
    virtual void drain() = 0;
};

} // namespace tavrin
