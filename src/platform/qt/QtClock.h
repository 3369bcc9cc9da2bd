#pragma once

#include "platform/Clock.h"

namespace tavrin {

/// The clocks of the system. Callable from any thread. Time that the machine sleeps does not count
/// as uptime.
class QtClock final : public Clock {
public:
    [[nodiscard]] Seconds sinceEpoch() const override;
    [[nodiscard]] Seconds uptime() const override;
};

} // namespace tavrin
