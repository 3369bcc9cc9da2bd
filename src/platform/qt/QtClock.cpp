#include "platform/qt/QtClock.h"

namespace tavrin {

Seconds QtClock::sinceEpoch() const
{
    return std::chrono::system_clock::now().time_since_epoch();
}

Seconds QtClock::uptime() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace tavrin
