#pragma once

#include "base/LocalizedText.h"

/// What the pages say about neural speech recognition on this machine.
namespace tavrin::texts {

inline constexpr LocalizedText onnxReady{u"本机神经网络语音识别，模型：%1",
    u"本機神經網路語音辨識，模型：%1", u"Neural speech recognition on this computer, model: %1"};
inline constexpr LocalizedText onnxNotLoaded{u"语音模型还没有加载：%1", u"語音模型還沒有載入：%1",
    u"The speech model is not loaded yet: %1"};

inline constexpr LocalizedText onnxNoFolder{u"语音模型文件夹不存在：%1",
    u"語音模型資料夾不存在：%1", u"The folder of the speech model does not exist: %1"};
inline constexpr LocalizedText onnxNoModel{u"文件夹里没有完整的语音模型：%1",
    u"資料夾裡沒有完整的語音模型：%1", u"The folder holds no complete speech model: %1"};
inline constexpr LocalizedText onnxUnknownKind{u"不支持这种语音模型：%1", u"不支援這種語音模型：%1",
    u"This kind of speech model is not supported: %1"};
inline constexpr LocalizedText onnxUnreadable{u"语音模型的文件无法读取：%1",
    u"語音模型的檔案無法讀取：%1", u"A file of the speech model cannot be read: %1"};
inline constexpr LocalizedText onnxMalformed{u"语音模型的文件已损坏，或不是 ONNX 模型：%1",
    u"語音模型的檔案已損毀，或不是 ONNX 模型：%1",
    u"A file of the speech model is damaged, or is no ONNX model: %1"};
inline constexpr LocalizedText onnxKeyMissing{u"语音模型缺少必需的元数据：%1",
    u"語音模型缺少必要的中繼資料：%1", u"The speech model lacks required metadata: %1"};
inline constexpr LocalizedText onnxKeyUnusable{u"语音模型的元数据无法使用：%1",
    u"語音模型的中繼資料無法使用：%1", u"Metadata of the speech model cannot be used: %1"};
inline constexpr LocalizedText onnxNoTokens{u"语音模型文件夹里没有 tokens.txt：%1",
    u"語音模型資料夾裡沒有 tokens.txt：%1",
    u"The folder of the speech model has no tokens.txt: %1"};
inline constexpr LocalizedText onnxTokensMalformed{u"语音模型的词表无法使用：%1",
    u"語音模型的詞表無法使用：%1", u"The speech model's table of tokens cannot be used: %1"};
inline constexpr LocalizedText onnxTokensShort{u"语音模型的词表不完整：%1",
    u"語音模型的詞表不完整：%1", u"The speech model's table of tokens is not complete: %1"};
inline constexpr LocalizedText onnxTokenMissing{u"语音模型的词表缺少必需的词元：%1",
    u"語音模型的詞表缺少必要的詞元：%1", u"The speech model's table of tokens lacks: %1"};
inline constexpr LocalizedText onnxNotWholeUtterance{u"这是实时模型，不能用来生成最终文本：%1",
    u"這是即時模型，無法用來產生最終文字：%1",
    u"This is a streaming model, which makes no final texts: %1"};

inline constexpr LocalizedText onnxNoLibrary{u"没有找到 sherpa-onnx 语音识别库：%1",
    u"找不到 sherpa-onnx 語音辨識程式庫：%1", u"The library sherpa-onnx is not there: %1"};
inline constexpr LocalizedText onnxNoPartner{u"sherpa-onnx 旁边缺少它需要的库：%1",
    u"sherpa-onnx 旁邊缺少它需要的程式庫：%1",
    u"A library that sherpa-onnx needs is not beside it: %1"};
inline constexpr LocalizedText onnxLibraryBroken{u"sherpa-onnx 语音识别库无法加载：%1",
    u"sherpa-onnx 語音辨識程式庫無法載入：%1", u"The library sherpa-onnx cannot be loaded: %1"};
inline constexpr LocalizedText onnxLibraryVersion{u"不支持这个版本的 sherpa-onnx：%1",
    u"不支援這個版本的 sherpa-onnx：%1", u"This version of sherpa-onnx is not supported: %1"};
inline constexpr LocalizedText onnxLibraryIncomplete{u"sherpa-onnx 语音识别库缺少函数：%1",
    u"sherpa-onnx 語音辨識程式庫缺少函式：%1", u"The library sherpa-onnx lacks a function: %1"};
inline constexpr LocalizedText onnxOtherLibrary{u"已经加载了另一个 sherpa-onnx：%1",
    u"已經載入另一個 sherpa-onnx：%1", u"Another sherpa-onnx is loaded already: %1"};
inline constexpr LocalizedText onnxModelRefused{u"sherpa-onnx 无法加载语音模型：%1",
    u"sherpa-onnx 無法載入語音模型：%1", u"sherpa-onnx cannot load the speech model: %1"};

} // namespace tavrin::texts
