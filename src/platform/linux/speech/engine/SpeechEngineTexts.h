#pragma once

#include "base/LocalizedText.h"

/// What the pages say about the engines, and the errors of the engines.
namespace tavrin::texts {

inline constexpr LocalizedText builtInRecogniser{u"内置", u"內建", u"Built-in"};
inline constexpr LocalizedText neuralRecogniser{u"神经网络", u"神經網路", u"Neural"};
inline constexpr LocalizedText serverRecogniser{u"语音服务器", u"語音伺服器", u"Speech server"};
inline constexpr LocalizedText streamingRecogniser{
    u"实时语音服务器", u"即時語音伺服器", u"Streaming server"};

inline constexpr LocalizedText sphinxReady{u"内置语音识别，识别语言：%1",
    u"內建語音辨識，辨識語言：%1", u"Built-in speech recognition, language: %1"};
inline constexpr LocalizedText noSphinxModel{
    u"没有安装语音模型。请安装 pocketsphinx-en-us 软件包，或指定一个 Sphinx 模型文件夹。",
    u"沒有安裝語音模型。請安裝 pocketsphinx-en-us 套件，或指定一個 Sphinx 模型資料夾。",
    u"No speech model is installed. Install the package pocketsphinx-en-us, or name the folder of "
    u"a "
    u"Sphinx model."};
inline constexpr LocalizedText brokenSphinxModel{
    u"语音模型无法加载：%1", u"語音模型無法載入：%1", u"The speech model cannot be loaded: %1"};

inline constexpr LocalizedText httpReady{
    u"语音识别服务器：%1", u"語音辨識伺服器：%1", u"Speech recognition server: %1"};
inline constexpr LocalizedText voskReady{u"实时语音识别服务器：%1", u"即時語音辨識伺服器：%1",
    u"Streaming speech recognition server: %1"};
inline constexpr LocalizedText noServerAddress{u"没有设置语音识别服务器的地址。",
    u"沒有設定語音辨識伺服器的位址。", u"No address of a speech recognition server is set."};
inline constexpr LocalizedText refusedServerAddress{
    u"语音识别服务器的地址不能使用：%1。本机以外的服务器必须使用加密连接。",
    u"語音辨識伺服器的位址無法使用：%1。本機以外的伺服器必須使用加密連線。",
    u"The address of the speech recognition server cannot be used: %1. A server outside this "
    u"computer needs an encrypted connection."};

// The errors: in Simplified Chinese in every interface language.
inline constexpr SimplifiedText modelUnusable{u"语音识别模型无法加载，请检查模型文件。"};
inline constexpr SimplifiedText recognitionCancelled{u"语音识别已取消。"};
inline constexpr SimplifiedText speechServerUnreachable{
    u"无法连接语音识别服务器，请检查地址和网络。"};
inline constexpr SimplifiedText speechServerSilent{u"语音识别服务器没有及时响应，请稍后重试。"};
inline constexpr SimplifiedText speechServerRefused{
    u"语音识别服务器拒绝了请求，请检查服务器设置。"};
inline constexpr SimplifiedText speechAnswerUnusable{u"语音识别服务器的响应无法使用。"};
inline constexpr SimplifiedText recognitionTooSlow{u"语音识别跟不上录音。"};
inline constexpr SimplifiedText recognizerEnded{u"语音识别程序意外退出，请重试。"};
inline constexpr SimplifiedText recognizerHung{u"语音识别程序没有响应，请重试。"};

} // namespace tavrin::texts
