#pragma once

#include "platform/linux/inputmethod/InputMethod.h"

namespace tavrin {

/// IBus, on a bus of its own. Its engine is that of all windows, or of the one that has the
/// keyboard, as the user has set it. What was being composed is dropped, as when he switches the
/// engine himself.
class IBus final : public InputMethod {
public:
    [[nodiscard]] QString name() const override { return QStringLiteral("ibus"); }

    [[nodiscard]] std::optional<QString> engine(Deadline deadline) override;
    [[nodiscard]] bool letsKeysPass(const QString& engine) const override;
    [[nodiscard]] bool deactivate(Deadline deadline) override;
    [[nodiscard]] bool activate(const QString& engine, Deadline deadline) override;
};

} // namespace tavrin
