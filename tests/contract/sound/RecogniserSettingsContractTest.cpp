#include "contract/Subject.h"
#include "platform/linux/speech/LinuxRecogniserSettings.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/speech/RecogniserSettings.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryRecogniserSettings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

/// Two recognisers, of which the chosen one hears two languages.
std::unique_ptr<RecogniserSettings> inMemory()
{
    static constexpr LocalizedText first{u"一"};
    static constexpr LocalizedText second{u"二"};
    auto settings = std::make_unique<InMemoryRecogniserSettings>();
    settings->offered.recognisers.append(RecogniserChoice{u"one"_s, first});
    settings->offered.recognisers.append(RecogniserChoice{u"two"_s, second});
    settings->offered.recogniser = u"one"_s;
    settings->offered.languages = {u"en-US"_s, u"de"_s};
    settings->offered.language = u"en-US"_s;
    return settings;
}

/// The same as engines and models that are set up.
class LinuxWithTwo final : public RecogniserSettings {
public:
    LinuxWithTwo()
    {
        m_preferences.setValue(keys::linuxSpeechHttpUrl, u"http://localhost:8000"_s);
        for (const QString& model : {u"en-us"_s, u"de"_s}) {
            QDir().mkpath(m_root.filePath(model));
            for (const QString& name : {u"mdef"_s, u"a.dict"_s, u"a.lm"_s})
                EXPECT_TRUE(QFile(m_root.filePath(model + u'/' + name)).open(QIODevice::WriteOnly));
        }
    }

    [[nodiscard]] RecogniserChoices choices() const override { return m_settings.choices(); }

    void selectRecogniser(const QString& identifier) override
    {
        m_settings.selectRecogniser(identifier);
    }

    void selectLanguage(const QString& tag) override { m_settings.selectLanguage(tag); }

private:
    QTemporaryDir m_root;
    InMemoryPreferences m_preferences;
    LinuxRecogniserSettings m_settings{m_preferences, {m_root.path()}};
};

class RecogniserSettingsContractTest : public ContractTest<RecogniserSettings> {
protected:
    [[nodiscard]] QStringList identifiers()
    {
        QStringList found;
        for (const RecogniserChoice& choice : subject().choices().recognisers)
            found.append(choice.identifier);
        return found;
    }
};

INSTANTIATE_TEST_SUITE_P(Implementations, RecogniserSettingsContractTest,
    ::testing::Values(Implementation<RecogniserSettings>{"InMemory", inMemory},
        Implementation<RecogniserSettings>{"Linux", makeSubject<RecogniserSettings, LinuxWithTwo>}),
    implementationName);

TEST_P(RecogniserSettingsContractTest, WhatIsChosenIsAmongTheChoices)
{
    const RecogniserChoices choices = subject().choices();

    EXPECT_EQ(identifiers().size(), 2);
    EXPECT_TRUE(identifiers().contains(choices.recogniser));
    EXPECT_EQ(choices.languages.size(), 2);
    EXPECT_TRUE(choices.languages.contains(choices.language));
}

TEST_P(RecogniserSettingsContractTest, ARecogniserIsChosenByItsIdentifier)
{
    for (const QString& identifier : identifiers()) {
        subject().selectRecogniser(identifier);
        EXPECT_EQ(subject().choices().recogniser, identifier);
    }
}

TEST_P(RecogniserSettingsContractTest, ALanguageIsChosenByItsTag)
{
    for (const QString& tag : subject().choices().languages) {
        subject().selectLanguage(tag);
        EXPECT_EQ(subject().choices().language, tag);
    }
}

TEST_P(RecogniserSettingsContractTest, WhatIsNotOfferedChangesNothing)
{
    const RecogniserChoices before = subject().choices();
    for (const QString& unknown : {u"abacus"_s, QString()}) {
        subject().selectRecogniser(unknown);
        subject().selectLanguage(unknown);
    }

    EXPECT_EQ(subject().choices().recogniser, before.recogniser);
    EXPECT_EQ(subject().choices().language, before.language);
}

} // namespace
} // namespace tavrin::testing
