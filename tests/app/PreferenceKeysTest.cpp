#include "platform/preferences/PreferenceKeys.h"

#include "platform/preferences/PreferenceValues.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"

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
        u"^inline const Setting<\\w+> (\\w+)"_s, QRegularExpression::MultilineOption);
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
        {keys::linuxSpeechOnnxModel, u"linuxSpeechOnnxModel"_s},
        {keys::linuxSpeechOnnxFinalModel, u"linuxSpeechOnnxFinalModel"_s},
        {keys::linuxSpeechOnnxLibrary, u"linuxSpeechOnnxLibrary"_s},
        {keys::linuxSpeechIdleMinutes, u"linuxSpeechIdleMinutes"_s},
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

/// What is read of a setting under which @p stored stands; nothing at all when it is invalid.
template <typename Value>
QVariant read(const Setting<Value>& setting, const QVariant& stored = {})
{
    testing::InMemoryPreferences preferences;
    if (stored.isValid())
        preferences.setValue(setting, stored);
    return QVariant::fromValue(valueOf(preferences, setting));
}

TEST(PreferenceKeysTest, ASettingThatNobodySetHasItsDefault)
{
    for (const auto& text : {keys::interfaceLanguage, keys::lastDeliveryReason,
             keys::preferredMicrophoneUID, keys::cloudAccessToken, keys::cloudRefreshToken,
             keys::cloudAccountEmail, keys::cloudDeviceId, keys::linuxSpeechSphinxModel})
        EXPECT_EQ(read(text), QVariant(QString())) << text.key.toStdString();
    for (const auto& list :
        {keys::dictationShortcutIdentifiers, keys::translationShortcutIdentifiers,
            keys::chatShortcutIdentifiers, keys::processingTimingSamples, keys::personalDictionary,
            keys::personalDictionaryEntries, keys::transcriptionHistory})
        EXPECT_EQ(read(list), QVariant(QVariantList())) << list.key.toStdString();
    EXPECT_EQ(read(keys::outputStyle), u"professional"_s);
    EXPECT_EQ(read(keys::translationTarget), u"english"_s);
    EXPECT_EQ(read(keys::shortcutMode), u"rightOption"_s);
    EXPECT_EQ(read(keys::historyRetention), u"30"_s);
    EXPECT_EQ(read(keys::providerModel), u"gemini-3.5-flash"_s);
    EXPECT_EQ(read(keys::linuxSpeechEngine), u"sphinx"_s);
    EXPECT_EQ(read(keys::linuxSpeechHttpModel), u"whisper-1"_s);
    EXPECT_EQ(read(keys::linuxSpeechLanguage), u"zh-CN"_s);
    EXPECT_EQ(read(keys::lastDeliveryVerified), false);
    EXPECT_EQ(read(keys::tavrinBetaOnboardingSeen), false);
    EXPECT_EQ(read(keys::muteDuringRecording), false);
    EXPECT_EQ(read(keys::automaticDictionaryLearning), true);
    EXPECT_EQ(read(keys::tavrinLastUpdateCheckAt), 0.0);
}

TEST(PreferenceKeysTest, AValueOfAnotherTypeIsNone)
{
    EXPECT_EQ(read(keys::historyRetention, 7), u"30"_s);
    EXPECT_EQ(read(keys::historyRetention, u"7"_s), u"7"_s);
    EXPECT_EQ(read(keys::automaticDictionaryLearning, u"false"_s), true);
    EXPECT_EQ(read(keys::automaticDictionaryLearning, 0), false);
    EXPECT_EQ(read(keys::tavrinBetaOnboardingSeen, u"true"_s), false);
    EXPECT_EQ(read(keys::tavrinBetaOnboardingSeen, 1), true);
    EXPECT_EQ(read(keys::tavrinLastUpdateCheckAt, u"1700000000"_s), 0.0);
    EXPECT_EQ(read(keys::tavrinLastUpdateCheckAt, 1'700'000'000), 1.7e9);
    EXPECT_EQ(read(keys::dictationShortcutIdentifiers, u"optionSpace"_s), QVariant(QVariantList()));
    EXPECT_EQ(read(keys::dictationShortcutIdentifiers, QStringList{u"optionSpace"_s}),
        QVariant(QVariantList{u"optionSpace"_s}));
}

TEST(PreferenceKeysTest, ValuesOfEarlierVersionsMeanWhatTookTheirPlace)
{
    EXPECT_EQ(read(keys::outputStyle, u"smart"_s), u"professional"_s);
    EXPECT_EQ(read(keys::outputStyle, u"prose"_s), u"professional"_s);
    EXPECT_EQ(read(keys::outputStyle, u"bullets"_s), u"meeting"_s);
    EXPECT_EQ(read(keys::outputStyle, u"casual"_s), u"casual"_s);
    EXPECT_EQ(read(keys::translationTarget, u"none"_s), u"english"_s);
    EXPECT_EQ(read(keys::translationTarget, u""_s), u"english"_s);
    EXPECT_EQ(read(keys::translationTarget, u"klingon"_s), u"klingon"_s);
}

TEST(PreferenceKeysTest, AnEmptyLanguageOrModelOfASpeechServerIsTheDefault)
{
    EXPECT_EQ(read(keys::linuxSpeechLanguage, u""_s), u"zh-CN"_s);
    EXPECT_EQ(read(keys::linuxSpeechLanguage, u"de-DE"_s), u"de-DE"_s);
    EXPECT_EQ(read(keys::linuxSpeechHttpModel, u""_s), u"whisper-1"_s);
    EXPECT_EQ(read(keys::linuxSpeechHttpModel, u"large-v3"_s), u"large-v3"_s);
}

} // namespace
} // namespace tavrin
