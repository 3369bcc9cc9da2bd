#pragma once

#include "platform/keyboard/HotKeyProbe.h"
#include "platform/linux/x11/X11Connection.h"

#include <optional>

namespace tavrin {

/// Tries to grab the combination for a moment; the X server refuses it when somebody else has it.
class X11HotKeyProbe final : public HotKeyProbe {
public:
    [[nodiscard]] bool isAvailable(int keyCode, KeyModifiers modifiers) override;
    [[nodiscard]] QString holder(int keyCode, KeyModifiers modifiers) override;
    [[nodiscard]] std::optional<bool> isKeptByDesktop(int keyCode, KeyModifiers modifiers) override;

private:
    [[nodiscard]] bool canGrabWithAnyLock(xcb_keycode_t code, quint16 mask);

    X11Connection m_connection;
};

} // namespace tavrin
