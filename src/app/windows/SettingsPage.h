#pragma once

#include <array>

namespace tavrin {

/// The pages of the main window; the values are the tags of their sidebar buttons.
enum class SettingsPage {
    Overview = 0,
    InputAndOutput = 1,
    Dictionary = 2,
    Permissions = 3,
    General = 4,
    History = 5,
    Account = 6,
};

/// The sidebar buttons from top to bottom, by the pages that they show.
inline constexpr std::array sidebarButtons{SettingsPage::Overview, SettingsPage::History,
    SettingsPage::Dictionary, SettingsPage::General, SettingsPage::InputAndOutput,
    SettingsPage::Permissions, SettingsPage::Account};

} // namespace tavrin
