#include "platform/PreferenceKeys.h"

#include "support/QtPrinters.h"

#include <QList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

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
    };
    for (const auto& [key, name] : rows)
        EXPECT_EQ(key, name);
}

} // namespace
} // namespace tavrin
