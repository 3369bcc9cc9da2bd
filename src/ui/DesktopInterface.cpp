#include "ui/DesktopInterface.h"

#include "app/Localization.h"
#include "platform/Workspace.h"
#include "ui/BrandStyle.h"
#include "ui/MainWindowFrame.h"
#include "ui/hud/HudWidget.h"
#include "ui/hud/PanelRecordingHUD.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The sizes that window lists and title bars use. The image of 1024 pixels stands for them all;
/// to send it to the window manager would cost four megabytes for every window.
constexpr std::array iconSizes{32, 48, 128, 256};

class DesktopInterface final : public UserInterface {
public:
    explicit DesktopInterface(const UserInterfaceNeighbours& neighbours)
        : m_panel([&workspace = neighbours.workspace] { return workspace.isCompositing(); })
        , m_hud({m_panel, neighbours.clock, neighbours.mainQueue, neighbours.localization,
              neighbours.settings})
        , m_frame(neighbours)
    {
    }

    bool loadApplicationIcon() override
    {
        if (!QFile::exists(u":/TavrinIcon-1024.png"_s))
            return false;
        QIcon appIcon;
        for (const int size : iconSizes)
            appIcon.addFile(u":/TavrinIcon-%1.png"_s.arg(size), QSize(size, size));
        QApplication::setWindowIcon(appIcon);
        m_frame.setIcon(appIcon);
        return true;
    }

    [[nodiscard]] RecordingHUD& hud() override { return m_hud; }

    [[nodiscard]] MainWindow& mainWindow() override { return m_frame; }

    [[nodiscard]] AccountPanel& accountPanel() override { return m_frame; }

    [[nodiscard]] HealthPanel& healthPanel() override { return m_frame; }

    [[nodiscard]] HistoryWindow& historyWindow() override { return m_frame; }

    [[nodiscard]] PersonalizationWindow& personalizationWindow() override { return m_frame; }

private:
    hud::Widget m_panel;
    PanelRecordingHUD m_hud;
    MainWindowFrame m_frame;
};

} // namespace

std::unique_ptr<UserInterface> createDesktopInterface(const UserInterfaceNeighbours& neighbours)
{
    brand::useGlyphsOf(neighbours.localization.InterfaceLanguage());
    return std::make_unique<DesktopInterface>(neighbours);
}

} // namespace tavrin
