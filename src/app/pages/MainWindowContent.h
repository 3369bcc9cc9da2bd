#pragma once

#include "app/windows/SettingsPage.h"

namespace tavrin {

/// What the frame of the main window shows: which page, and which of the sidebar.
struct MainWindowContent {
    SettingsPage page = SettingsPage::Account; ///< Its sidebar button is highlighted too.
    /// Without a stored cloud session the sidebar has the Account button alone
    /// (`authenticatedSidebarViews` are hidden).
    bool isSignedIn = false;
    int accountSidebarButtonY = 0; ///< Of its bottom, in points from the window's.
    bool animates = false; ///< The page comes in now, with its animation.

    friend bool operator==(const MainWindowContent&, const MainWindowContent&) = default;
};

} // namespace tavrin
