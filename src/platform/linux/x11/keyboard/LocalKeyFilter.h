#pragma once

#include "platform/linux/x11/keyboard/KeyTracker.h"

#include <QAbstractNativeEventFilter>

#include <optional>
#include <utility>

namespace tavrin {

/// Sees the keys of our own windows before Qt does, and can keep them from it. Main thread.
class LocalKeyFilter final : public QAbstractNativeEventFilter, public KeyObservation {
public:
    explicit LocalKeyFilter(KeyMonitor::LocalHandler handler);
    ~LocalKeyFilter() override;

    LocalKeyFilter(const LocalKeyFilter&) = delete;
    LocalKeyFilter& operator=(const LocalKeyFilter&) = delete;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    [[nodiscard]] bool handleKey(const xcb_key_press_event_t& event, bool press);
    /// Reads the map when it has changed, and for the first key.
    [[nodiscard]] const KeyboardMap& currentMap();

    KeyMonitor::LocalHandler m_handler;
    X11Connection m_connection; // For the map alone: Qt's own is not told when that changes.
    std::optional<KeyboardMap> m_map;
    KeyTracker m_tracker;
    std::pair<xcb_keycode_t, xcb_timestamp_t> m_lastRelease{0, 0};
};

} // namespace tavrin
