#pragma once

#include "base/LocalizedText.h"

/// Texts of the shortcut settings.
namespace tavrin::texts {

inline constexpr LocalizedText shortcutAlreadyInUse{
    u"快捷键已被占用", u"快捷鍵已被佔用", u"Shortcut already in use"};
inline constexpr LocalizedText chooseAnotherShortcut{
    u"语音输入、翻译和畅聊不能使用相同快捷键，请选择另一个组合。",
    u"語音輸入、翻譯和暢聊不能使用相同快捷鍵，請選擇另一個組合。",
    u"Dictation, translation, and chat cannot share the same shortcut. Choose another "
    u"combination."};

/// The first shortcut of each operation.
inline constexpr LocalizedText shortcutSummary{u"语音 %1  ·  翻译 %2  ·  畅聊 %3",
    u"語音 %1  ·  翻譯 %2  ·  暢聊 %3", u"Dictation %1  ·  Translation %2  ·  Chat %3"};

inline constexpr LocalizedText shortcutConflict{u"⚠ 检测到系统级组合键冲突，请更换被占用的快捷键。",
    u"⚠ 偵測到系統快捷鍵衝突，請更換被佔用的快捷鍵。",
    u"⚠ A system shortcut conflict was detected. Choose another shortcut."};
inline constexpr LocalizedText noShortcutConflict{
    u"✓ Tavrin 内部无冲突。macOS 无法枚举其他软件的全部私有快捷键。",
    u"✓ Tavrin 內部沒有衝突。macOS 無法列出其他軟體的所有私人快捷鍵。",
    u"✓ No internal conflict. macOS cannot list every private shortcut used by other apps."};

} // namespace tavrin::texts
