#pragma once

#include "platform/linux/x11/X11Thread.h"
#include "platform/linux/x11/keyboard/KeyTracker.h"

namespace tavrin {

/// Follows every key of the keyboards by raw events, on a thread of its own and without grabbing
/// any, so that other programs' grabs hide nothing.
class RawKeyWatch final : public X11Thread {
public:
    using Handler = std::function<void(const KeyEvent&)>;

    /// @p isOwnWindowActive is set by the main thread; events of that time are left to it.
    RawKeyWatch(Handler handler, std::shared_ptr<const std::atomic<bool>> isOwnWindowActive);
    ~RawKeyWatch() override;

    RawKeyWatch(const RawKeyWatch&) = delete;
    RawKeyWatch& operator=(const RawKeyWatch&) = delete;

    /// Begins to watch; false when the X server lacks the input extension.
    [[nodiscard]] bool begin();

protected:
    void handleEvent(const xcb_generic_event_t& event) override;

private:
    void handleKey(xcb_keycode_t code, bool press);
    void report(const KeyTracker::Events& events) const;

    Handler m_handler;
    std::shared_ptr<const std::atomic<bool>> m_isOwnWindowActive;
    quint8 m_inputExtension = 0;
    KeyboardMap m_map;
    bool m_mapChanged = false;
    KeyTracker m_tracker;
};

} // namespace tavrin
