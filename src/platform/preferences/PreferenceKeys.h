#pragma once

#include "platform/preferences/Setting.h"

/// Every setting: its key, exactly as it is stored, its type, what it is while nothing that fits is
/// stored, and what values mean that earlier versions left. They stand beside the port, because the
/// modules that share the preferences may not see each other.
namespace tavrin::keys {

// Interface, styles, targets and shortcuts (src/app).
// Empty: as the system's preferred languages say.
inline const Setting<QString> interfaceLanguage{QStringLiteral("interfaceLanguage")};
inline const Setting<QString> outputStyle{QStringLiteral("outputStyle"),
    QStringLiteral("professional"),
    {{QStringLiteral("smart"), QStringLiteral("professional")},
        {QStringLiteral("prose"), QStringLiteral("professional")},
        {QStringLiteral("bullets"), QStringLiteral("meeting")}}};
// Older versions could translate into no language at all.
inline const Setting<QString> translationTarget{QStringLiteral("translationTarget"),
    QStringLiteral("english"),
    {{QStringLiteral("none"), QStringLiteral("english")}, {QString(), QStringLiteral("english")}}};
// Absent: from `shortcutMode`.
inline const Setting<QVariantList> dictationShortcutIdentifiers{
    QStringLiteral("dictationShortcutIdentifiers")};
// Absent: what dictation and the desktop leave.
inline const Setting<QVariantList> translationShortcutIdentifiers{
    QStringLiteral("translationShortcutIdentifiers")};
// Absent: what the others leave.
inline const Setting<QVariantList> chatShortcutIdentifiers{
    QStringLiteral("chatShortcutIdentifiers")};
inline const Setting<QString> shortcutMode{
    QStringLiteral("shortcutMode"), QStringLiteral("rightOption")};

// Session, launch and update check (src/app).
inline const Setting<QVariantList> processingTimingSamples{
    QStringLiteral("processingTimingSamples")};
inline const Setting<bool> lastDeliveryVerified{QStringLiteral("lastDeliveryVerified"), false};
inline const Setting<QString> lastDeliveryReason{QStringLiteral("lastDeliveryReason")};
inline const Setting<bool> tavrinBetaOnboardingSeen{
    QStringLiteral("tavrinBetaOnboardingSeen"), false};
// Seconds since 1970.
inline const Setting<double> tavrinLastUpdateCheckAt{QStringLiteral("tavrinLastUpdateCheckAt"), 0};

// Audio environment (src/audio).
inline const Setting<bool> muteDuringRecording{QStringLiteral("muteDuringRecording"), false};
inline const Setting<QString> preferredMicrophoneUID{QStringLiteral("preferredMicrophoneUID")};

// Dictionary (src/dictionary).
inline const Setting<bool> automaticDictionaryLearning{
    QStringLiteral("automaticDictionaryLearning"), true};
// Of versions without entries.
inline const Setting<QVariantList> personalDictionary{QStringLiteral("personalDictionary")};
inline const Setting<QVariantList> personalDictionaryEntries{
    QStringLiteral("personalDictionaryEntries")};
inline const Setting<QVariantMap> dictionaryLearningCandidateCounts{
    QStringLiteral("dictionaryLearningCandidateCounts")};

// History (src/history).
// Days, "forever" or "none".
inline const Setting<QString> historyRetention{
    QStringLiteral("historyRetention"), QStringLiteral("30")};
// Of versions without a history file.
inline const Setting<QVariantList> transcriptionHistory{QStringLiteral("transcriptionHistory")};

// Writing style (src/app/pages).
inline const Setting<QString> writingTone{QStringLiteral("writingTone")};
inline const Setting<QString> writingStyleSample{QStringLiteral("writingStyleSample")};

// Cloud service (src/cloud).
inline const Setting<QString> cloudAccessToken{QStringLiteral("cloudAccessToken")};
inline const Setting<QString> cloudRefreshToken{QStringLiteral("cloudRefreshToken")};
inline const Setting<QString> cloudAccountEmail{QStringLiteral("cloudAccountEmail")};
inline const Setting<QString> cloudDeviceId{QStringLiteral("cloudDeviceId")};
inline const Setting<QString> serviceMode{QStringLiteral("serviceMode")};
// Empty: the deployment's.
inline const Setting<QString> providerBaseURL{QStringLiteral("providerBaseURL")};
inline const Setting<QString> providerModel{
    QStringLiteral("providerModel"), QStringLiteral("gemini-3.5-flash")};
inline const Setting<QString> providerAPIKey{QStringLiteral("providerAPIKey")};

// Linux only: the speech engine and what it needs (src/platform/linux/speech).
// Anything unknown, or nothing: "onnx" where a model is chosen for it, else the default.
inline const Setting<QString> linuxSpeechEngine{
    QStringLiteral("linuxSpeechEngine"), QStringLiteral("sphinx")};
// Empty: the best model installed.
inline const Setting<QString> linuxSpeechSphinxModel{QStringLiteral("linuxSpeechSphinxModel")};
// Folders: of a neural model, of one that makes the final texts, and of sherpa-onnx, which runs
// them. Empty: none, the same model, and the one in the user's data folder.
inline const Setting<QString> linuxSpeechOnnxModel{QStringLiteral("linuxSpeechOnnxModel")};
inline const Setting<QString> linuxSpeechOnnxFinalModel{
    QStringLiteral("linuxSpeechOnnxFinalModel")};
inline const Setting<QString> linuxSpeechOnnxLibrary{QStringLiteral("linuxSpeechOnnxLibrary")};
inline const Setting<double> linuxSpeechIdleMinutes{QStringLiteral("linuxSpeechIdleMinutes"), 10};
inline const Setting<QString> linuxSpeechHttpUrl{QStringLiteral("linuxSpeechHttpUrl")};
inline const Setting<QString> linuxSpeechHttpModel{QStringLiteral("linuxSpeechHttpModel"),
    QStringLiteral("whisper-1"), {{QString(), QStringLiteral("whisper-1")}}};
inline const Setting<QString> linuxSpeechHttpKey{QStringLiteral("linuxSpeechHttpKey")};
inline const Setting<QString> linuxSpeechVoskUrl{QStringLiteral("linuxSpeechVoskUrl")};
inline const Setting<QString> linuxSpeechLanguage{QStringLiteral("linuxSpeechLanguage"),
    QStringLiteral("zh-CN"), {{QString(), QStringLiteral("zh-CN")}}};

} // namespace tavrin::keys
