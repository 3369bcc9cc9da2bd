#pragma once

#include "app/windows/SettingsPage.h"
#include "base/LocalizedText.h"

#include <array>

/// What the sidebar of the main window says.
namespace tavrin::texts {

inline constexpr LocalizedText useSection{u"使用", u"使用", u"USE"};
inline constexpr LocalizedText settingsSection{u"设置", u"設定", u"SETTINGS"};

/// In the order of sidebarButtons.
inline constexpr std::array sidebarTitles{
    LocalizedText{u"概览", u"概覽", u"Overview"},
    LocalizedText{u"历史记录", u"歷史記錄", u"History"},
    LocalizedText{u"词典", u"詞典", u"Dictionary"},
    LocalizedText{u"通用", u"一般", u"General"},
    LocalizedText{u"输入与输出", u"輸入與輸出", u"Input & Output"},
    LocalizedText{u"权限与健康", u"權限與健康", u"Permissions"},
    LocalizedText{u"账户", u"帳戶", u"Account"},
};
static_assert(sidebarTitles.size() == sidebarButtons.size());

} // namespace tavrin::texts
