#include "platform/linux/inputmethod/FakeBus.h"

#include <gio/gio.h>

namespace tavrin::testing {
namespace {

QStringList textsIn(GVariant* body)
{
    QStringList texts;
    for (gsize i = 0; body && i < g_variant_n_children(body); ++i) {
        GVariant* const child = g_variant_get_child_value(body, i);
        if (g_variant_is_of_type(child, G_VARIANT_TYPE_STRING))
            texts.append(QString::fromUtf8(g_variant_get_string(child, nullptr)));
        g_variant_unref(child);
    }
    return texts;
}

gboolean quit(void* loop)
{
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_REMOVE;
}

} // namespace

FakeBus::FakeBus(Service service)
    : m_service(std::move(service))
    , m_context(g_main_context_new())
    , m_loop(g_main_loop_new(m_context, FALSE))
{
    g_main_context_push_thread_default(m_context); // Connections arrive there.
    const QByteArray place = "unix:dir=" + m_folder.path().toUtf8();
    char* const guid = g_dbus_generate_guid();
    m_server = g_dbus_server_new_sync(
        place.constData(), G_DBUS_SERVER_FLAGS_NONE, guid, nullptr, nullptr, nullptr);
    g_free(guid);
    g_signal_connect(m_server, "new-connection", G_CALLBACK(accept), this);
    g_dbus_server_start(m_server);
    g_main_context_pop_thread_default(m_context);
    m_thread = std::thread([this] { g_main_loop_run(m_loop); });
}

FakeBus::~FakeBus()
{
    GSource* const end = g_idle_source_new(); // Also heard by a loop that has yet to begin.
    g_source_set_callback(end, quit, m_loop, nullptr);
    g_source_attach(end, m_context);
    g_source_unref(end);
    m_thread.join();
    g_dbus_server_stop(m_server);
    for (GDBusConnection* const connection : m_connections) {
        g_dbus_connection_close_sync(connection, nullptr, nullptr);
        g_object_unref(connection);
    }
    g_object_unref(m_server);
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

QByteArray FakeBus::address() const
{
    return g_dbus_server_get_client_address(m_server);
}

QStringList FakeBus::calls()
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

int FakeBus::accept(GDBusServer* /*server*/, GDBusConnection* connection, void* bus)
{
    auto& self = *static_cast<FakeBus*>(bus);
    const std::lock_guard lock(self.m_mutex);
    self.m_connections.push_back(static_cast<GDBusConnection*>(g_object_ref(connection)));
    g_dbus_connection_add_filter(connection, filter, bus, nullptr);
    return TRUE;
}

GDBusMessage* FakeBus::filter(
    GDBusConnection* connection, GDBusMessage* message, int incoming, void* bus)
{
    if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL)
        return message;
    if (GVariant* const body = static_cast<FakeBus*>(bus)->answer(message)) {
        GDBusMessage* const reply = g_dbus_message_new_method_reply(message);
        g_dbus_message_set_body(reply, body);
        g_dbus_connection_send_message(
            connection, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
        g_object_unref(reply);
    }
    g_object_unref(message);
    return nullptr;
}

GVariant* FakeBus::answer(GDBusMessage* call)
{
    const std::lock_guard lock(m_mutex);
    const QString method = QString::fromUtf8(g_dbus_message_get_member(call));
    if (method == QStringLiteral("Hello"))
        return g_variant_new("(s)", ":1.1");
    m_calls.append(method);
    return m_service(method, textsIn(g_dbus_message_get_body(call)));
}

} // namespace tavrin::testing
