#include "platform/linux/x11/keyboard/X11KeyMonitor.h"

#include "base/Log.h"
#include "platform/linux/x11/keyboard/LocalKeyFilter.h"
#include "platform/linux/x11/keyboard/RawKeyWatch.h"

#include <QGuiApplication>
#include <QWindow>

namespace tavrin {
namespace {

class GlobalObservation final : public KeyObservation {
public:
    GlobalObservation(KeyMonitor::GlobalHandler handler,
        std::shared_ptr<const std::atomic<bool>> isOwnWindowActive)
        : m_watch(std::move(handler), std::move(isOwnWindowActive))
    {
    }

    [[nodiscard]] bool begin() { return m_watch.begin(); }

private:
    RawKeyWatch m_watch;
};

} // namespace

X11KeyMonitor::X11KeyMonitor()
    : m_isOwnWindowActive(
        std::make_shared<std::atomic<bool>>(QGuiApplication::focusWindow() != nullptr))
{
    const auto follow = [active = m_isOwnWindowActive] {
        *active = QGuiApplication::focusWindow() != nullptr;
    };
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &m_focusFollower,
        [this, follow](const QWindow* window) {
            follow();
            // One that is deleted with the focus, as an alert is, loses it without that signal.
            QObject::disconnect(m_deletion);
            if (window)
                m_deletion =
                    QObject::connect(window, &QObject::destroyed, &m_focusFollower, follow);
        });
}

std::unique_ptr<KeyObservation> X11KeyMonitor::addGlobalMonitor(GlobalHandler handler)
{
    auto observation = std::make_unique<GlobalObservation>(std::move(handler), m_isOwnWindowActive);
    if (observation->begin())
        return observation;
    qCWarning(log::platform) << "Shortcuts work in Tavrin's own windows only: there is no X server "
                                "with the input extension.";
    return nullptr;
}

std::unique_ptr<KeyObservation> X11KeyMonitor::addLocalMonitor(LocalHandler handler)
{
    return std::make_unique<LocalKeyFilter>(std::move(handler));
}

} // namespace tavrin
