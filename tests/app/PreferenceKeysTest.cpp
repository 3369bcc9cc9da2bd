#include "platform/PreferenceKeys.h"

#include "support/QtPrinters.h"

#include <QFile>
#include <QList>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The constants of the header, in their order.
QStringList declaredKeys()
{
    QFile header(QStringLiteral(TAVRIN_PREFERENCE_KEYS));
    EXPECT_TRUE(header.open(QIODevice::ReadOnly));
    static const QRegularExpression declaration(
        u"^inline const QString (\\w+)"_s, QRegularExpression::MultilineOption);
    QStringList names;
    const QString text = QString::fromUtf8(header.readAll());
    for (auto found = declaration.globalMatch(text); found.hasNext();)
        names.append(found.next().captured(1));
    return names;
}

// What is stored outlives every version: a key that changed would lose what the user has set.
TEST(PreferenceKeysTest, EveryKeyIsStoredUnderItsName)
{
    const QList<std::pair<QString, QString>> rows{
        {keys::interfaceLanguage, u"interfaceLanguage"_s},
        {keys::outputStyle, u"outputStyle"_s},
        {keys::translationTarget, u"translationTarget"_s},
        {keys::dictationShortcutIdentifiers, u"dictationShortcutIdentifiers"_s},
        {keys::translationShortcutIdentifiers, u"translationShortcutIdentifiers"_s},
        {keys::chatShortcutIdentifiers, u"chatShortcutIdentifiers"_s},
        {keys::shortcutMode, u"shortcutMode"_s},
        {keys::processingTimingSamples, u"processingTimingSamples"_s},
        {keys::lastDeliveryVerified, u"lastDeliveryVerified"_s},
        {keys::lastDeliveryReason, u"lastDeliveryReason"_s},
        {keys::tavrinBetaOnboardingSeen, u"tavrinBetaOnboardingSeen"_s},
        {keys::tavrinLastUpdateCheckAt, u"tavrinLastUpdateCheckAt"_s},
        {keys::muteDuringRecording, u"muteDuringRecording"_s},
        {keys::preferredMicrophoneUID, u"preferredMicrophoneUID"_s},
        {keys::automaticDictionaryLearning, u"automaticDictionaryLearning"_s},
        {keys::personalDictionary, u"personalDictionary"_s},
        {keys::personalDictionaryEntries, u"personalDictionaryEntries"_s},
        {keys::dictionaryLearningCandidateCounts, u"dictionaryLearningCandidateCounts"_s},
        {keys::historyRetention, u"historyRetention"_s},
        {keys::transcriptionHistory, u"transcriptionHistory"_s},
        {keys::writingTone, u"writingTone"_s},
        {keys::writingStyleSample, u"writingStyleSample"_s},
        {keys::cloudAccessToken, u"cloudAccessToken"_s},
        {keys::cloudRefreshToken, u"cloudRefreshToken"_s},
        {keys::cloudAccountEmail, u"cloudAccountEmail"_s},
        {keys::cloudDeviceId, u"cloudDeviceId"_s},
        {keys::serviceMode, u"serviceMode"_s},
        {keys::providerBaseURL, u"providerBaseURL"_s},
        {keys::providerModel, u"providerModel"_s},
        {keys::providerAPIKey, u"providerAPIKey"_s},
        {keys::linuxSpeechEngine, u"linuxSpeechEngine"_s},
        {keys::linuxSpeechSphinxModel, u"linuxSpeechSphinxModel"_s},
        {keys::linuxSpeechHttpUrl, u"linuxSpeechHttpUrl"_s},
        {keys::linuxSpeechHttpModel, u"linuxSpeechHttpModel"_s},
        {keys::linuxSpeechHttpKey, u"linuxSpeechHttpKey"_s},
        {keys::linuxSpeechVoskUrl, u"linuxSpeechVoskUrl"_s},
        {keys::linuxSpeechLanguage, u"linuxSpeechLanguage"_s},
    };
    QStringList names;
    for (const auto& [key, name] : rows) {
        EXPECT_EQ(key, name);
        names.append(name);
    }
    EXPECT_EQ(names, declaredKeys()); // Each is named as it is stored, and none is forgotten here.
}

} // namespace
} // namespace tavrin
