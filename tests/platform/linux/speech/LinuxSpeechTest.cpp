#include "platform/linux/speech/LinuxSpeech.h"

#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/speech/SpeechAvailability.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class LinuxSpeechTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    QTemporaryDir empty;

    SpeechAvailability availability() const
    {
        return createLinuxSpeech(preferences, noCapture).fileRecognizer->availability();
    }

    bool hearsLive() const
    {
        return createLinuxSpeech(preferences, noCapture).liveRecognizer->isAvailable();
    }

private:
    static Result<std::unique_ptr<SpeechCapture>> noCapture(
        const std::function<void(std::span<const qint16>)>&)
    {
        return failure({"TavrinAudio", 11, {}});
    }
};

TEST_F(LinuxSpeechTest, TheInstalledSphinxModelIsUsedUnlessAnotherEngineIsChosen)
{
    EXPECT_TRUE(availability().isAvailable);
    EXPECT_EQ(availability().text.en, texts::sphinxReady.en);
    EXPECT_EQ(availability().argument, "en-US");
    EXPECT_EQ(linuxSpeechLanguage(preferences), "en-US");
    EXPECT_TRUE(hearsLive());
}

TEST_F(LinuxSpeechTest, AnUnknownEngineIsTheBuiltInOne)
{
    preferences.setValue(keys::linuxSpeechEngine, "abacus");
    EXPECT_EQ(availability().text.en, texts::sphinxReady.en);
    preferences.setValue(keys::linuxSpeechEngine, 7);
    EXPECT_EQ(availability().text.en, texts::sphinxReady.en);
}

TEST_F(LinuxSpeechTest, ANeuralModelThatCannotBeUsedIsSaidSo)
{
    preferences.setValue(keys::linuxSpeechOnnxModel, "/nowhere/zipformer");
    EXPECT_FALSE(availability().isAvailable);
    EXPECT_EQ(availability().text.en, texts::onnxNoFolder.en);
    EXPECT_EQ(availability().argument, "/nowhere/zipformer");
    EXPECT_EQ(linuxSpeechLanguage(preferences), "");
}

TEST_F(LinuxSpeechTest, WithoutAModelThereIsNoSpeechRecognition)
{
    preferences.setValue(keys::linuxSpeechSphinxModel, empty.path());

    EXPECT_FALSE(availability().isAvailable);
    EXPECT_EQ(availability().text.en, texts::noSphinxModel.en);
    EXPECT_EQ(linuxSpeechLanguage(preferences), "");
    EXPECT_FALSE(hearsLive());
}

TEST_F(LinuxSpeechTest, AnHttpServerHearsRecordingsInTheSetLanguage)
{
    preferences.setValue(keys::linuxSpeechEngine, "http");
    EXPECT_EQ(availability().text.en, texts::noServerAddress.en);
    EXPECT_EQ(linuxSpeechLanguage(preferences), "");

    preferences.setValue(keys::linuxSpeechHttpUrl, "http://localhost:8000");
    EXPECT_TRUE(availability().isAvailable);
    EXPECT_EQ(availability().argument, "http://localhost:8000/v1/audio/transcriptions");
    EXPECT_EQ(linuxSpeechLanguage(preferences), "zh-CN");
    EXPECT_FALSE(hearsLive());

    preferences.setValue(keys::linuxSpeechLanguage, "de-DE");
    EXPECT_EQ(linuxSpeechLanguage(preferences), "de-DE");
}

TEST_F(LinuxSpeechTest, AVoskServerHearsLiveSpeechToo)
{
    preferences.setValue(keys::linuxSpeechEngine, "vosk");
    preferences.setValue(keys::linuxSpeechVoskUrl, "ws://speech.example");
    EXPECT_EQ(availability().text.en, texts::refusedServerAddress.en);
    EXPECT_FALSE(hearsLive());

    preferences.setValue(keys::linuxSpeechVoskUrl, "ws://127.0.0.1:2700");
    EXPECT_TRUE(availability().isAvailable);
    EXPECT_EQ(availability().text.en, texts::voskReady.en);
    EXPECT_TRUE(hearsLive());
    EXPECT_EQ(linuxSpeechLanguage(preferences), "zh-CN");
}

TEST_F(LinuxSpeechTest, WhatIsHeardDependsNeitherOnTheInterfaceNorOnTheTargetLanguage)
{
    preferences.setValue(keys::linuxSpeechHttpUrl, "http://localhost:8000");
    preferences.setValue(keys::linuxSpeechVoskUrl, "ws://127.0.0.1:2700");
    const QList<std::pair<QString, QString>> rows{
        {"http", "zh-CN"}, {"vosk", "zh-CN"}, {"sphinx", "en-US"}};
    for (const auto& [engine, language] : rows) {
        preferences.setValue(keys::linuxSpeechEngine, engine);
        for (const char* interface : {"en", "zh-Hant", "zh-Hans", "system"}) {
            preferences.setValue(keys::interfaceLanguage, interface);
            for (const char* target : {"none", "english", "french"}) {
                preferences.setValue(keys::translationTarget, target);
                EXPECT_EQ(linuxSpeechLanguage(preferences), language) << interface << target;
            }
        }
    }
}

} // namespace
} // namespace tavrin
