#include "platform/linux/x11/SecondKeyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace tavrin::testing {
namespace {

constexpr quint8 deviceKeyPress = 1; // Of the extension's events.

template <class Part>
QByteArray bytesOf(const Part& part)
{
    return {reinterpret_cast<const char*>(&part), sizeof part};
}

} // namespace

SecondKeyboard::SecondKeyboard()
{
    QByteArray name = "Second";
    const auto length = static_cast<quint16>(name.size());
    name.append(2, '\0'); // Up to a whole number of words.
    const xcb_input_add_master_t addition{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER,
        static_cast<quint16>((sizeof(xcb_input_add_master_t) + 8) / 4), length, 1, 1};
    const xcb_input_xi_query_version_cookie_t version =
        xcb_input_xi_query_version(m_connection.get(), 2, 2);
    const XcbPointer<xcb_input_xi_query_version_reply_t> known(
        xcb_input_xi_query_version_reply(m_connection.get(), version, nullptr));
    change(bytesOf(addition) + name);
    m_master = device("Second pointer");
    m_keys = static_cast<quint8>(device("Second XTEST keyboard"));
}

SecondKeyboard::~SecondKeyboard()
{
    if (m_master == 0)
        return;
    const xcb_input_remove_master_t removal{XCB_INPUT_HIERARCHY_CHANGE_TYPE_REMOVE_MASTER,
        sizeof(xcb_input_remove_master_t) / 4, m_master, XCB_INPUT_CHANGE_MODE_FLOAT, 0, 0, 0};
    change(bytesOf(removal));
}

void SecondKeyboard::pressKey(xcb_keycode_t code)
{
    const auto* extension = xcb_get_extension_data(m_connection.get(), &xcb_input_id);
    const auto type = static_cast<quint8>(extension->first_event + deviceKeyPress);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_connection.get(),
        xcb_test_fake_input_checked(
            m_connection.get(), type, code, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, m_keys)));
}

quint16 SecondKeyboard::device(const QByteArray& name) const
{
    const XcbPointer<xcb_input_xi_query_device_reply_t> all(
        xcb_input_xi_query_device_reply(m_connection.get(),
            xcb_input_xi_query_device(m_connection.get(), XCB_INPUT_DEVICE_ALL), nullptr));
    if (!all)
        return 0;
    for (auto each = xcb_input_xi_query_device_infos_iterator(all.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const QByteArray its(xcb_input_xi_device_info_name(each.data), each.data->name_len);
        if (its == name)
            return each.data->deviceid;
    }
    return 0;
}

void SecondKeyboard::change(const QByteArray& hierarchy) const
{
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_connection.get(),
        xcb_input_xi_change_hierarchy_checked(m_connection.get(), 1,
            reinterpret_cast<const xcb_input_hierarchy_change_t*>(hierarchy.constData()))));
}

} // namespace tavrin::testing
