#pragma once

#include "base/LocalizedText.h"

/// Texts of the update check, in Simplified Chinese in every interface language.
namespace tavrin::texts {

inline constexpr SimplifiedText cannotCheckForUpdates{u"暂时无法检查更新"};
inline constexpr SimplifiedText tryAgainLater{u"请稍后再试。"};

inline constexpr SimplifiedText updateReady{u"Tavrin %1 已准备好"};
inline constexpr SimplifiedText newVersion{u"新版本"};
inline constexpr SimplifiedText updateBody{u"%1\n\n下载完成后，打开安装包并替换现有 Tavrin。"};
inline constexpr SimplifiedText defaultNotes{u"包含体验优化与稳定性改进。"};
inline constexpr SimplifiedText downloadUpdate{u"下载更新"};
inline constexpr SimplifiedText later{u"稍后"};

inline constexpr SimplifiedText upToDate{u"Tavrin 已是最新版本"};
inline constexpr SimplifiedText currentBuild{u"当前为 %1（build %2）。"};
inline constexpr SimplifiedText currentVersion{u"当前版本"};

} // namespace tavrin::texts
