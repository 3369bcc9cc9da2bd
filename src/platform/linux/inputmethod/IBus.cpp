#include "platform/linux/inputmethod/IBus.h"

#include "platform/linux/inputmethod/EngineWait.h"
#include "platform/linux/inputmethod/IBusAddress.h"

#include <dbus/dbus.h>
#include <optional>

namespace tavrin {
namespace {

const char* const service = "org.freedesktop.IBus";
const char* const path = "/org/freedesktop/IBus";

/// Keys as they are. It comes with IBus; its layout is not put to use by selecting it.
QString plainEngine()
{
    return QStringLiteral("xkb:us::eng");
}

/// An engine is described as (sa{sv}ss…): the name of that type, attachments, and its own name.
std::optional<QString> engineNameIn(DBusMessage* answer)
{
    DBusMessageIter position;
    if (!dbus_message_iter_init(answer, &position))
        return {};
    while (dbus_message_iter_get_arg_type(&position) == DBUS_TYPE_VARIANT) {
        DBusMessageIter inner;
        dbus_message_iter_recurse(&position, &inner);
        position = inner;
    }
    if (dbus_message_iter_get_arg_type(&position) != DBUS_TYPE_STRUCT)
        return {};
    DBusMessageIter field;
    dbus_message_iter_recurse(&position, &field);
    for (const int type : {DBUS_TYPE_STRING, DBUS_TYPE_ARRAY}) {
        if (dbus_message_iter_get_arg_type(&field) != type || !dbus_message_iter_next(&field))
            return {};
    }
    if (dbus_message_iter_get_arg_type(&field) != DBUS_TYPE_STRING)
        return {};
    const char* name = nullptr;
    dbus_message_iter_get_basic(&field, &name);
    return QString::fromUtf8(name);
}

class Daemon {
public:
    explicit Daemon(Deadline deadline)
        : m_bus(ibusAddress(), deadline)
        , m_deadline(deadline)
    {
    }

    [[nodiscard]] std::optional<QString> engine() const
    {
        const BusAnswer answer =
            m_bus.call({service, path, "org.freedesktop.DBus.Properties", "Get",
                           {QString::fromLatin1(service), QStringLiteral("GlobalEngine")}},
                m_deadline);
        return answer ? engineNameIn(answer.get()) : std::nullopt;
    }

    /// True once the engine is in use.
    [[nodiscard]] bool select(const QString& name) const
    {
        if (!m_bus.call({service, path, service, "SetGlobalEngine", {name}}, m_deadline))
            return false;
        return engineBecomes(
            [this] { return engine(); }, [&](const QString& now) { return now == name; });
    }

private:
    BusConnection m_bus;
    Deadline m_deadline;
};

} // namespace

std::optional<QString> IBus::engine(Deadline deadline)
{
    return Daemon(deadline).engine();
}

bool IBus::letsKeysPass(const QString& engine) const
{
    return engine.isEmpty() || engine.startsWith(QStringLiteral("xkb:"));
}

bool IBus::deactivate(Deadline deadline)
{
    return Daemon(deadline).select(plainEngine());
}

bool IBus::activate(const QString& engine, Deadline deadline)
{
    const Daemon daemon(deadline);
    const auto now = daemon.engine();
    if (now && *now != plainEngine())
        return true;
    return now && daemon.select(engine);
}

} // namespace tavrin
