#include "platform/linux/inputmethod/BusConnection.h"

#include <dbus/dbus.h>

namespace tavrin {
namespace {

int millisecondsUntil(Deadline deadline)
{
    const auto left = deadline - std::chrono::steady_clock::now();
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
}

BusAnswer messageOf(const BusCall& call)
{
    BusAnswer message(
        dbus_message_new_method_call(call.service, call.path, call.interface, call.method));
    dbus_message_set_auto_start(message.get(), FALSE);
    DBusMessageIter position;
    dbus_message_iter_init_append(message.get(), &position);
    for (const QString& argument : call.arguments) {
        const QByteArray text = argument.toUtf8();
        const char* const start = text.constData();
        dbus_message_iter_append_basic(&position, DBUS_TYPE_STRING, &start);
    }
    return message;
}

/// Sending a message to a bus that never lets anybody in would wait for ever.
bool isLetIn(DBusConnection* connection, Deadline deadline)
{
    while (!dbus_connection_get_is_authenticated(connection)) {
        const int patience = millisecondsUntil(deadline);
        if (patience <= 0 || !dbus_connection_read_write(connection, patience))
            return false;
    }
    return true;
}

} // namespace

void MessageDeleter::operator()(DBusMessage* message) const
{
    dbus_message_unref(message);
}

BusConnection::BusConnection(const QByteArray& address, Deadline deadline)
{
    if (address.isEmpty())
        return;
    m_connection = dbus_connection_open_private(address.constData(), nullptr);
    if (!m_connection)
        return;
    if (!isLetIn(m_connection, deadline)) {
        close();
        return;
    }
    // Not dbus_bus_register(): that waits for a hung bus as long as it likes.
    const BusAnswer name =
        call({DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"}, deadline);
    const char* own = nullptr;
    if (name
        && dbus_message_get_args(name.get(), nullptr, DBUS_TYPE_STRING, &own, DBUS_TYPE_INVALID))
        dbus_bus_set_unique_name(m_connection, own);
    else
        close();
}

BusConnection::~BusConnection()
{
    if (m_connection)
        close();
}

BusAnswer BusConnection::call(const BusCall& call, Deadline deadline) const
{
    const int patience = millisecondsUntil(deadline);
    if (!m_connection || patience <= 0)
        return {};
    const BusAnswer message = messageOf(call);
    return BusAnswer(
        dbus_connection_send_with_reply_and_block(m_connection, message.get(), patience, nullptr));
}

void BusConnection::close()
{
    dbus_connection_close(m_connection);
    dbus_connection_unref(m_connection);
    m_connection = nullptr;
}

} // namespace tavrin
