#include "platform/linux/x11/X11Programs.h"

#include <xcb/res.h>

namespace tavrin {

qint64 processOf(const X11Connection& connection, xcb_window_t window)
{
    if (!connection.isOpen())
        return 0;
    xcb_connection_t* server = connection.get();
    const auto* extension = xcb_get_extension_data(server, &xcb_res_id);
    if (!extension || extension->present == 0)
        return 0;
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XcbPointer<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        server, xcb_res_query_client_ids(server, 1, &wanted), nullptr));
    if (!reply)
        return 0;
    auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    if (ids.rem == 0 || xcb_res_client_id_value_value_length(ids.data) == 0)
        return 0;
    return *xcb_res_client_id_value_value(ids.data);
}

bool isSameProgram(const X11Connection& connection, xcb_window_t one, xcb_window_t other)
{
    if (!connection.isOpen())
        return false;
    const quint32 ofConnection = ~xcb_get_setup(connection.get())->resource_id_mask;
    if ((one & ofConnection) == (other & ofConnection))
        return true;
    const qint64 process = processOf(connection, one);
    return process > 0 && process == processOf(connection, other);
}

} // namespace tavrin
