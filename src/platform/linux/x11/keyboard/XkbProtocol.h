#pragma once

#include "platform/linux/x11/X11Connection.h"

// The protocol of the keyboard extension. The header's parameter names are keywords of C++.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace tavrin::xkb {

/// Whether the server has the extension; it answers nothing of it to who has not asked.
[[nodiscard]] inline bool isUsable(const X11Connection& connection)
{
    if (!connection.isOpen())
        return false;
    const auto cookie =
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const XcbPointer<xcb_xkb_use_extension_reply_t> reply(
        xcb_xkb_use_extension_reply(connection.get(), cookie, nullptr));
    return reply && reply->supported != 0;
}

} // namespace tavrin::xkb
