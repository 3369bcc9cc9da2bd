#pragma once

#include "platform/keyboard/KeyMonitor.h"

#include <QObject>

#include <atomic>

namespace tavrin {

/// Watches the keyboard of an X11 session. Global handlers run on a thread of their own, even while
/// the main thread is busy.
class X11KeyMonitor final : public KeyMonitor {
public:
    X11KeyMonitor();

    [[nodiscard]] std::unique_ptr<KeyObservation> addGlobalMonitor(GlobalHandler handler) override;
    [[nodiscard]] std::unique_ptr<KeyObservation> addLocalMonitor(LocalHandler handler) override;

private:
    std::shared_ptr<std::atomic<bool>> m_isOwnWindowActive; // Shared with the threads.
    QMetaObject::Connection m_deletion; ///< Of the window that has the focus.
    QObject m_focusFollower; // Ends the connections that keep it up to date.
};

} // namespace tavrin
