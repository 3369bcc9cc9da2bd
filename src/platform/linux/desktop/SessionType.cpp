#include "platform/linux/desktop/SessionType.h"

using namespace Qt::StringLiterals;

namespace tavrin {

bool isWaylandSession(const Environment& environment)
{
    return !environment(u"WAYLAND_DISPLAY"_s).isEmpty()
        || environment(u"XDG_SESSION_TYPE"_s) == "wayland"_L1;
}

} // namespace tavrin
