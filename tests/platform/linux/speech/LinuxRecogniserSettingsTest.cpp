#include "platform/linux/speech/LinuxRecogniserSettings.h"

#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class LinuxRecogniserSettingsTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    QTemporaryDir root;
    QTemporaryDir elsewhere;
    LinuxRecogniserSettings settings{preferences, {root.path()}};

    static void install(const QTemporaryDir& place, const QString& model)
    {
        QDir().mkpath(place.filePath(model));
        for (const QString& name : {u"mdef"_s, u"a.dict"_s, u"a.lm"_s})
            EXPECT_TRUE(QFile(place.filePath(model + u'/' + name)).open(QIODevice::WriteOnly));
    }

    QStringList names() const
    {
        QStringList found;
        for (const RecogniserChoice& choice : settings.choices().recognisers)
            found.append(choice.identifier + u" = "_s + choice.name.en.toString());
        return found;
    }

    QString language() const { return settings.choices().language; }
};

TEST_F(LinuxRecogniserSettingsTest, OnlyTheBuiltInOneIsThereUntilAServerHasAnAddress)
{
    EXPECT_EQ(names(), QStringList{u"sphinx = Built-in"_s});
    EXPECT_EQ(settings.choices().recogniser, "sphinx");

    preferences.setValue(keys::linuxSpeechVoskUrl, u"ws://127.0.0.1:2700"_s);
    preferences.setValue(keys::linuxSpeechHttpUrl, u"  "_s);
    EXPECT_EQ(names(), (QStringList{u"sphinx = Built-in"_s, u"vosk = Streaming server"_s}));
    preferences.setValue(keys::linuxSpeechHttpUrl, u"http://localhost:8000"_s);
    EXPECT_EQ(names(),
        (QStringList{
            u"sphinx = Built-in"_s, u"http = Speech server"_s, u"vosk = Streaming server"_s}));
}

TEST_F(LinuxRecogniserSettingsTest, AServerThatWasChosenWithoutAnAddressIsShownAsChosen)
{
    preferences.setValue(keys::linuxSpeechEngine, u"http"_s);

    EXPECT_EQ(settings.choices().recogniser, "http");
    EXPECT_EQ(names(), (QStringList{u"sphinx = Built-in"_s, u"http = Speech server"_s}));
}

TEST_F(LinuxRecogniserSettingsTest, WithANeuralModelTheNeuralOneIsThereAndChosen)
{
    preferences.setValue(keys::linuxSpeechOnnxModel, u"/models/zipformer"_s);
    EXPECT_EQ(names(), (QStringList{u"sphinx = Built-in"_s, u"onnx = Neural"_s}));
    EXPECT_EQ(settings.choices().recogniser, "onnx");
    EXPECT_EQ(settings.choices().languages, QStringList()); // There is no such folder.

    settings.selectRecogniser(u"sphinx"_s);
    EXPECT_EQ(settings.choices().recogniser, "sphinx");
    settings.selectRecogniser(u"onnx"_s);
    EXPECT_EQ(preferences.flushed(keys::linuxSpeechEngine), QVariant(u"onnx"_s));
}

TEST_F(LinuxRecogniserSettingsTest, AnUnknownEngineIsTheBuiltInOne)
{
    preferences.setValue(keys::linuxSpeechEngine, u"abacus"_s);
    EXPECT_EQ(settings.choices().recogniser, "sphinx");
    preferences.setValue(keys::linuxSpeechEngine, 7);
    EXPECT_EQ(settings.choices().recogniser, "sphinx");
}

TEST_F(LinuxRecogniserSettingsTest, TheChosenEngineIsStoredDownToTheDisk)
{
    preferences.setValue(keys::linuxSpeechHttpUrl, u"http://localhost:8000"_s);
    settings.selectRecogniser(u"http"_s);
    EXPECT_EQ(preferences.flushed(keys::linuxSpeechEngine), QVariant(u"http"_s));

    settings.selectRecogniser(u"vosk"_s); // It has no address.
    EXPECT_EQ(preferences.value(keys::linuxSpeechEngine), QVariant(u"http"_s));
    settings.selectRecogniser(u"sphinx"_s);
    EXPECT_EQ(preferences.flushed(keys::linuxSpeechEngine), QVariant(u"sphinx"_s));
}

TEST_F(LinuxRecogniserSettingsTest, TheBuiltInOneHearsWhatModelsAreInstalledFor)
{
    EXPECT_TRUE(settings.choices().languages.isEmpty());
    EXPECT_EQ(language(), "");

    install(root, u"en-us"_s);
    install(root, u"zh_cn"_s);
    EXPECT_EQ(settings.choices().languages, (QStringList{u"en-US"_s, u"zh-CN"_s}));
    EXPECT_EQ(language(), "zh-CN"); // What is used while nothing is chosen.
}

TEST_F(LinuxRecogniserSettingsTest, ALanguageOfTheBuiltInOneIsAModel)
{
    install(root, u"en-us"_s);
    install(root, u"zh_cn"_s);
    settings.selectLanguage(u"en-US"_s);

    EXPECT_EQ(language(), "en-US");
    EXPECT_EQ(
        preferences.flushed(keys::linuxSpeechSphinxModel), QVariant(root.filePath(u"en-us"_s)));
    EXPECT_FALSE(preferences.value(keys::linuxSpeechLanguage).isValid());
}

TEST_F(LinuxRecogniserSettingsTest, AModelOfTheUsersOwnIsOfferedWhileItIsChosen)
{
    install(root, u"en-us"_s);
    install(elsewhere, u"de"_s);
    preferences.setValue(keys::linuxSpeechSphinxModel, elsewhere.filePath(u"de"_s));
    EXPECT_EQ(settings.choices().languages, (QStringList{u"en-US"_s, u"de"_s}));
    EXPECT_EQ(language(), "de");

    settings.selectLanguage(u"de"_s);
    EXPECT_EQ(
        preferences.value(keys::linuxSpeechSphinxModel), QVariant(elsewhere.filePath(u"de"_s)));
    settings.selectLanguage(u"en-US"_s);
    EXPECT_EQ(settings.choices().languages, QStringList{u"en-US"_s});
}

TEST_F(LinuxRecogniserSettingsTest, AModelThatIsGoneLeavesTheOthersToChooseFrom)
{
    install(root, u"en-us"_s);
    preferences.setValue(keys::linuxSpeechSphinxModel, elsewhere.filePath(u"gone"_s));

    EXPECT_EQ(language(), "");
    EXPECT_EQ(settings.choices().languages, QStringList{u"en-US"_s});
}

TEST_F(LinuxRecogniserSettingsTest, AServerHearsMandarinUntilAnotherLanguageIsChosen)
{
    preferences.setValue(keys::linuxSpeechEngine, u"vosk"_s);
    EXPECT_EQ(language(), "zh-CN");
    EXPECT_EQ(settings.choices().languages.size(), 21);

    settings.selectLanguage(u"en-US"_s);
    EXPECT_EQ(language(), "en-US");
    EXPECT_EQ(preferences.flushed(keys::linuxSpeechLanguage), QVariant(u"en-US"_s));
    EXPECT_FALSE(preferences.value(keys::linuxSpeechSphinxModel).isValid());
}

TEST_F(LinuxRecogniserSettingsTest, ALanguageSetInTheFileIsOfferedToo)
{
    preferences.setValue(keys::linuxSpeechEngine, u"http"_s);
    preferences.setValue(keys::linuxSpeechLanguage, u"tlh"_s);

    EXPECT_EQ(language(), "tlh");
    EXPECT_EQ(settings.choices().languages.last(), "tlh");
}

} // namespace
} // namespace tavrin
