#pragma once

#include "app/pages/MainWindowContent.h"
#include "app/windows/MainWindow.h"
#include "app/windows/View.h"

#include <QMap>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace tavrin {

class Localization;
class MainWindowController;
class Workspace;

namespace ui {
class FocusRing;
class Page;
class PageTransition;
class Sidebar;
} // namespace ui

/// The main window: the sidebar on the left, the selected page on the right. What stands in it is
/// built when it is first shown, and each page when it is first selected: nobody waits for pages
/// that he does not look at. Main thread only.
class MainWindowFrame final : public MainWindow, public View<MainWindowContent> {
public:
    /// Makes the widget of a page, a child of the window.
    using CreatePage = std::function<ui::Page*(QWidget& window, SettingsPage page)>;

    struct Neighbours {
        const Localization& localization;
        const Workspace& workspace;
        MainWindowController& controller;
        CreatePage createPage;
        std::function<void()> configurePages; ///< The first thing that they show.
        std::function<void()> refreshShortcuts; ///< Where pages show them.
    };

    /// @param neighbours must outlive the window.
    explicit MainWindowFrame(Neighbours neighbours);
    ~MainWindowFrame() override;

    MainWindowFrame(const MainWindowFrame&) = delete;
    MainWindowFrame& operator=(const MainWindowFrame&) = delete;

    void configureMainWindow() override;
    void show() override;
    void hide() override;
    [[nodiscard]] bool isVisible() const override;
    void refreshShortcuts() override;
    void selectSettingsPage(SettingsPage page) override;

    void setContent(const MainWindowContent& content) override;

    [[nodiscard]] QWidget* widget() { return m_window.get(); }

private:
    /// What stands in the window, which owns it.
    struct Contents {
        ui::Sidebar* sidebar = nullptr;
        ui::PageTransition* transition = nullptr;
        ui::FocusRing* focusRing = nullptr;
        QMap<SettingsPage, ui::Page*> settingsPages; ///< Those that were selected once.
    };

    void buildContents();
    void showPage(SettingsPage selected, bool animates);
    void centreOnScreen();

    Neighbours m_neighbours;
    std::unique_ptr<QWidget> m_window;
    std::optional<Contents> m_contents; ///< Nothing before the window was first shown.
};

} // namespace tavrin
