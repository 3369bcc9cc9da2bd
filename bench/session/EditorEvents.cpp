#include "EditorEvents.h"

#include "Report.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

struct Unref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }

    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }

    void operator()(GError* error) const { g_error_free(error); }
};

using Variant = std::unique_ptr<GVariant, Unref>;

/// Throws what has gone wrong, if anything has.
void check(GError* error)
{
    const std::unique_ptr<GError, Unref> owned(error);
    if (owned)
        throw std::runtime_error(owned->message);
}

Variant call(GDBusConnection* bus, const char* name, const char* path, const char* interface,
    const char* method, GVariant* arguments)
{
    GError* error = nullptr;
    Variant answer(g_dbus_connection_call_sync(bus, name, path, interface, method, arguments,
        nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error));
    check(error);
    return answer;
}

std::string accessibilityBusAddress()
{
    GError* error = nullptr;
    const std::unique_ptr<GDBusConnection, Unref> session(
        g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
    check(error);
    const Variant answer =
        call(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr);
    const char* address = nullptr;
    g_variant_get(answer.get(), "(&s)", &address);
    return address;
}

/// The arguments are (kind, offset, length, text, …).
void handleTextChange(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
    const char* /*interface*/, const char* /*signal*/, GVariant* arguments, gpointer /*data*/)
{
    if (g_variant_n_children(arguments) < 4)
        return;
    const Variant kind(g_variant_get_child_value(arguments, 0));
    const Variant boxed(g_variant_get_child_value(arguments, 3));
    if (!g_variant_is_of_type(kind.get(), G_VARIANT_TYPE_STRING)
        || !g_variant_is_of_type(boxed.get(), G_VARIANT_TYPE_VARIANT)
        || !std::string(g_variant_get_string(kind.get(), nullptr)).starts_with("insert"))
        return;
    const Variant text(g_variant_get_variant(boxed.get()));
    if (!g_variant_is_of_type(text.get(), G_VARIANT_TYPE_STRING))
        return;
    std::string inserted = g_variant_get_string(text.get(), nullptr);
    std::ranges::replace(inserted, '\n', ' ');
    report("inserted", inserted);
}

} // namespace

EditorEvents::EditorEvents()
{
    GError* error = nullptr;
    m_bus = g_dbus_connection_new_for_address_sync(accessibilityBusAddress().c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    check(error);
    g_dbus_connection_signal_subscribe(m_bus, nullptr, "org.a11y.atspi.Event.Object", "TextChanged",
        nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, handleTextChange, nullptr, nullptr);
    // Editors stay silent until somebody is registered.
    call(m_bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
        "RegisterEvent", g_variant_new("(s)", "object:text-changed:insert"));
}

EditorEvents::~EditorEvents()
{
    g_object_unref(m_bus);
}

} // namespace bench
