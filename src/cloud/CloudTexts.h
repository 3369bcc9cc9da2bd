#pragma once

#include "base/LocalizedText.h"

/// Messages of the cloud client. Only those of the chat are translated.
namespace tavrin::texts {

inline constexpr SimplifiedText invalidCloudUrl{u"云端服务地址无效；正式服务必须使用 HTTPS。"};
inline constexpr SimplifiedText signInExpiredSignInAgain{u"登录已失效，请重新登录。"};
inline constexpr SimplifiedText signInExpired{u"登录已失效。"};
inline constexpr SimplifiedText signInFirst{u"请先登录。"};
inline constexpr SimplifiedText requestCancelled{u"请求已取消。"};

inline constexpr SimplifiedText polishNeedsSignIn{u"请先登录 Tavrin 云端账号。"};
inline constexpr SimplifiedText polishWithoutText{u"云端没有返回整理结果。"};

inline constexpr LocalizedText chatNeedsSignIn{u"请先登录 Tavrin 云端账号。",
    u"請先登入 Tavrin 雲端帳戶。", u"Sign in to Tavrin Cloud first."};
inline constexpr LocalizedText chatWithoutText{u"云端没有返回畅聊回答。", u"雲端沒有返回暢聊回答。",
    u"Tavrin Cloud did not return a chat answer."};

} // namespace tavrin::texts
