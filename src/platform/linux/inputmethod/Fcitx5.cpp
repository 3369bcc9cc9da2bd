#include "platform/linux/inputmethod/Fcitx5.h"

#include "platform/linux/desktop/XdgFolders.h"
#include "platform/linux/inputmethod/EngineWait.h"

#include <QFile>

#include <dbus/dbus.h>
#include <optional>

namespace tavrin {
namespace {

QByteArray sessionBusAddress()
{
    QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QString socket = xdg::runtimeFolder() + QStringLiteral("/bus");
    if (address.isEmpty() && QFile::exists(socket))
        return "unix:path=" + QFile::encodeName(socket);
    return address;
}

class Controller {
public:
    explicit Controller(Deadline deadline)
        : m_bus(sessionBusAddress(), deadline)
        , m_deadline(deadline)
    {
    }

    /// The engine in use in the field that had the keyboard last; nothing without an answer.
    [[nodiscard]] std::optional<QString> engine() const
    {
        const BusAnswer answer = call("CurrentInputMethod");
        const char* name = nullptr;
        if (!answer
            || !dbus_message_get_args(
                answer.get(), nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID))
            return {};
        return QString::fromUtf8(name);
    }

    [[nodiscard]] BusAnswer call(const char* method, const QStringList& arguments = {}) const
    {
        return m_bus.call(
            {"org.fcitx.Fcitx5", "/controller", "org.fcitx.Fcitx.Controller1", method, arguments},
            m_deadline);
    }

    /// Whether the engine is @p wanted before the deadline.
    template <class Condition>
    [[nodiscard]] bool becomes(const Condition& wanted) const
    {
        return engineBecomes([this] { return engine(); }, wanted);
    }

private:
    BusConnection m_bus;
    Deadline m_deadline;
};

/// Engines that are keyboard layouts take keys as they are; none is in use before the first field.
bool isKeyboard(const QString& engine)
{
    return engine.isEmpty() || engine.startsWith(QStringLiteral("keyboard-"));
}

} // namespace

std::optional<QString> Fcitx5::engine(Deadline deadline)
{
    return Controller(deadline).engine();
}

bool Fcitx5::letsKeysPass(const QString& engine) const
{
    return isKeyboard(engine);
}

bool Fcitx5::deactivate(Deadline deadline)
{
    const Controller controller(deadline);
    return controller.call("Deactivate") && controller.becomes(isKeyboard);
}

bool Fcitx5::activate(const QString& engine, Deadline deadline)
{
    const Controller controller(deadline);
    const auto now = controller.engine();
    if (!now || !isKeyboard(*now))
        return now.has_value();
    if (!controller.call("Activate"))
        return false;
    if (controller.engine() != engine && !controller.call("SetCurrentIM", {engine}))
        return false;
    return controller.becomes([&](const QString& name) { return name == engine; });
}

} // namespace tavrin
