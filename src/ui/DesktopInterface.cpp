#include "ui/DesktopInterface.h"

#include "base/CallbackGuard.h"
#include "platform/MainQueue.h"
#include "platform/Workspace.h"
#include "ui/ApplicationIcon.h"
#include "ui/MainWindowFrame.h"
#include "ui/hud/HudController.h"
#include "ui/hud/HudWidget.h"

#include <QApplication>

namespace tavrin {
namespace {

class DesktopInterface final : public UserInterface {
public:
    explicit DesktopInterface(const UserInterfaceNeighbours& neighbours)
        : m_mainQueue(neighbours.mainQueue)
        , m_panel(neighbours.workspace)
        , m_hud({m_panel, neighbours.clock, neighbours.mainQueue, neighbours.localization,
              neighbours.settings})
        , m_frame(neighbours)
    {
    }

    bool loadApplicationIcon() override
    {
        if (!hasApplicationIcon())
            return false;
        // Decoded when the window stands there: the first image takes as long as half the window.
        m_mainQueue.post(m_guard.bind([] {
            const QIcon appIcon = windowIcon();
            QApplication::setWindowIcon(appIcon);
        }));
        return true;
    }

    [[nodiscard]] RecordingHUD& hud() override { return m_hud; }

    [[nodiscard]] MainWindow& mainWindow() override { return m_frame; }

    [[nodiscard]] AccountPanel& accountPanel() override { return m_frame; }

    [[nodiscard]] HealthPanel& healthPanel() override { return m_frame; }

    void showHistoryWindow() override { m_frame.showHistoryWindow(); }

    void showPersonalizationWindow() override { m_frame.showPersonalizationWindow(); }

private:
    MainQueue& m_mainQueue;
    hud::Widget m_panel;
    HudController m_hud;
    MainWindowFrame m_frame;
    CallbackGuard m_guard;
};

} // namespace

std::unique_ptr<UserInterface> createDesktopInterface(const UserInterfaceNeighbours& neighbours)
{
    return std::make_unique<DesktopInterface>(neighbours);
}

} // namespace tavrin
