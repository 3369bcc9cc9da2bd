#pragma once

#include "base/LocalizedText.h"

/// Texts of the provider settings, in Simplified Chinese in every interface language.
namespace tavrin::texts {

inline constexpr SimplifiedText modelApiSettings{u"模型 API 配置"};
inline constexpr SimplifiedText modelApiNotice{
    u"语音由 macOS 识别；这里的模型只负责整理文字。测试版会将 Key "
    u"明文保存在本机偏好设置中，不再使用钥"
    u"匙串。"};
inline constexpr SimplifiedText save{u"保存"};
inline constexpr SimplifiedText cancel{u"取消"};
inline constexpr SimplifiedText apiKeyLabel{u"API Key"};
inline constexpr SimplifiedText baseUrlLabel{u"Base URL"};
inline constexpr SimplifiedText modelLabel{u"模型"};
inline constexpr SimplifiedText keyIsStored{u"已保存；留空则保持不变"};
inline constexpr SimplifiedText keyExample{u"sk-…"};

} // namespace tavrin::texts
