#pragma once

#include "platform/linux/inputmethod/BusConnection.h"

#include <QString>

#include <optional>

namespace tavrin {

/// An input method of the session: the program through which the keys of others pass, and which
/// makes Chinese of some of them. Each call opens a connection of its own and keeps none, so that a
/// new one of the same kind is found; none waits beyond its deadline.
class InputMethod {
public:
    virtual ~InputMethod() = default;

    /// How notes name it.
    [[nodiscard]] virtual QString name() const = 0;

    /// The engine that keys pass through now, empty for none; nothing when no such input method
    /// runs or answers. It has dealt by then with the keys that reached it before.
    [[nodiscard]] virtual std::optional<QString> engine(Deadline deadline) = 0;

    /// Whether @p engine leaves keys as they are.
    [[nodiscard]] virtual bool letsKeysPass(const QString& engine) const = 0;

    /// Lets keys pass as they are, which ends an open composition. True once that is so.
    [[nodiscard]] virtual bool deactivate(Deadline deadline) = 0;

    /// Undoes deactivate(), unless somebody has switched to another engine since. False when the
    /// input method runs and has not done it.
    [[nodiscard]] virtual bool activate(const QString& engine, Deadline deadline) = 0;
};

} // namespace tavrin
