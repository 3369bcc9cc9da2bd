#pragma once

#include <QString>

/// Every preference key, named exactly as it is stored. They stand beside the port, because the
/// modules that share the preferences may not see each other.
namespace tavrin::keys {

// Interface, styles, targets and shortcuts (src/app).
inline const QString interfaceLanguage = QStringLiteral("interfaceLanguage");
inline const QString outputStyle = QStringLiteral("outputStyle");
inline const QString translationTarget = QStringLiteral("translationTarget");
inline const QString dictationShortcutIdentifiers = QStringLiteral("dictationShortcutIdentifiers");
inline const QString translationShortcutIdentifiers =
    QStringLiteral("translationShortcutIdentifiers");
inline const QString chatShortcutIdentifiers = QStringLiteral("chatShortcutIdentifiers");
inline const QString shortcutMode = QStringLiteral("shortcutMode");

// Session, launch and update check (src/app).
inline const QString processingTimingSamples = QStringLiteral("processingTimingSamples");
inline const QString lastDeliveryVerified = QStringLiteral("lastDeliveryVerified");
inline const QString lastDeliveryReason = QStringLiteral("lastDeliveryReason");
inline const QString tavrinBetaOnboardingSeen = QStringLiteral("tavrinBetaOnboardingSeen");
inline const QString tavrinLastUpdateCheckAt = QStringLiteral("tavrinLastUpdateCheckAt");

// Audio environment (src/audio).
inline const QString muteDuringRecording = QStringLiteral("muteDuringRecording");
inline const QString preferredMicrophoneUID = QStringLiteral("preferredMicrophoneUID");

// Dictionary (src/dictionary).
inline const QString automaticDictionaryLearning = QStringLiteral("automaticDictionaryLearning");
inline const QString personalDictionary = QStringLiteral("personalDictionary");
inline const QString personalDictionaryEntries = QStringLiteral("personalDictionaryEntries");
inline const QString dictionaryLearningCandidateCounts =
    QStringLiteral("dictionaryLearningCandidateCounts");

// History (src/history).
inline const QString historyRetention = QStringLiteral("historyRetention");
inline const QString transcriptionHistory = QStringLiteral("transcriptionHistory");

// Writing style page (src/ui).
inline const QString writingTone = QStringLiteral("writingTone");
inline const QString writingStyleSample = QStringLiteral("writingStyleSample");

// Cloud service (src/cloud).
inline const QString cloudAccessToken = QStringLiteral("cloudAccessToken");
inline const QString cloudRefreshToken = QStringLiteral("cloudRefreshToken");
inline const QString cloudAccountEmail = QStringLiteral("cloudAccountEmail");
inline const QString cloudDeviceId = QStringLiteral("cloudDeviceId");
inline const QString serviceMode = QStringLiteral("serviceMode");
inline const QString providerBaseURL = QStringLiteral("providerBaseURL");
inline const QString providerModel = QStringLiteral("providerModel");
inline const QString providerAPIKey = QStringLiteral("providerAPIKey");

// Linux only: the speech engine and what it needs (src/platform/linux/speech).
inline const QString linuxSpeechEngine = QStringLiteral("linuxSpeechEngine");
inline const QString linuxSpeechSphinxModel = QStringLiteral("linuxSpeechSphinxModel");
inline const QString linuxSpeechHttpUrl = QStringLiteral("linuxSpeechHttpUrl");
inline const QString linuxSpeechHttpModel = QStringLiteral("linuxSpeechHttpModel");
inline const QString linuxSpeechHttpKey = QStringLiteral("linuxSpeechHttpKey");
inline const QString linuxSpeechVoskUrl = QStringLiteral("linuxSpeechVoskUrl");
inline const QString linuxSpeechLanguage = QStringLiteral("linuxSpeechLanguage");

} // namespace tavrin::keys
