#pragma once

#include "app/windows/AccountPanel.h"
#include "app/windows/HealthPanel.h"
#include "app/windows/MainWindow.h"
#include "app/windows/UserInterface.h"

#include <memory>

class QLabel;
class QVBoxLayout;
class QWidget;

namespace tavrin {

/// The main window: brand icon, name and the shortcuts of the moment, and what the session keeps
/// out of reach. It has no pages; whoever asks for one gets the window itself in front. Main thread
/// only.
class MainWindowFrame final : public MainWindow, public AccountPanel, public HealthPanel {
public:
    /// @param neighbours must outlive the window.
    explicit MainWindowFrame(UserInterfaceNeighbours neighbours);
    ~MainWindowFrame() override;

    MainWindowFrame(const MainWindowFrame&) = delete;
    MainWindowFrame& operator=(const MainWindowFrame&) = delete;

    void configureMainWindow() override;
    void show() override;
    void hide() override;
    [[nodiscard]] bool isVisible() const override;
    void refreshShortcuts() override;
    void selectSettingsPage(SettingsPage page) override;

    void refreshAccountUI() override { }

    void showLoginDialog() override;

    void refreshHealthStatus() override { }

    void showHistoryWindow() const;
    void showPersonalizationWindow() const;

    [[nodiscard]] QWidget* widget() { return m_window.get(); }

private:
    void buildContents();
    void addReachNotice(QVBoxLayout& layout) const;
    void centreOnScreen();

    UserInterfaceNeighbours m_neighbours;
    std::unique_ptr<QWidget> m_window;
    QLabel* m_instructionLabel = nullptr; ///< Owned by the window, and null until it was shown.
};

} // namespace tavrin
