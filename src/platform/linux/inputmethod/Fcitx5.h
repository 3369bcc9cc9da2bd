#pragma once

#include "platform/linux/inputmethod/InputMethod.h"

namespace tavrin {

/// Fcitx 5, on the session bus. It keeps a state for each input field: calls are about the one that
/// had the keyboard last. What was being composed becomes text, as its letters.
///
/// It cannot be set aside where its list of engines begins with none for plain keys.
class Fcitx5 final : public InputMethod {
public:
    [[nodiscard]] QString name() const override { return QStringLiteral("fcitx5"); }

    [[nodiscard]] std::optional<QString> engine(Deadline deadline) override;
    [[nodiscard]] bool letsKeysPass(const QString& engine) const override;
    [[nodiscard]] bool deactivate(Deadline deadline) override;
    [[nodiscard]] bool activate(const QString& engine, Deadline deadline) override;
};

} // namespace tavrin
