#pragma once

#include "app/windows/SettingsPage.h"

namespace tavrin {

/// The application's one full window, as the controller sees it. Main thread only. Closing it
/// only hides it.
class MainWindow {
public:
    virtual ~MainWindow() = default;

    /// Builds the window with all its pages, hidden. Called once, at launch.
    virtual void configureMainWindow() = 0;

    /// Shows the window in front of the program's other windows; one that is minimised comes back.
    virtual void show() = 0;
    virtual void hide() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Shows the shortcuts of the moment, where it shows them.
    virtual void refreshShortcuts() = 0;

    /// Shows @p page as if its sidebar button had been pressed.
    virtual void selectSettingsPage(SettingsPage page) = 0;
};

} // namespace tavrin
