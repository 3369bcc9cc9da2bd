#include "platform/linux/speech/sphinx/SphinxModel.h"

#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class SphinxModelTest : public ::testing::Test {
protected:
    QTemporaryDir root;

    void touch(const QString& path) const
    {
        const QString whole = root.filePath(path);
        QDir().mkpath(QFileInfo(whole).path());
        QFile file(whole);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    /// As Debian packages a model.
    void installPackaged(const QString& name) const
    {
        touch(name + "/" + name + "/mdef");
        touch(name + "/cmudict-" + name + ".dict");
        touch(name + "/" + name + "-phone.lm.bin");
        touch(name + "/" + name + ".lm.bin");
    }

    QString foundLanguage() const
    {
        const auto model = findSphinxModel({}, {root.path()});
        return model ? model->language : QStringLiteral("none");
    }
};

TEST_F(SphinxModelTest, APackagedModelIsFoundWithItsFiles)
{
    installPackaged("en-us");

    EXPECT_EQ(sphinxModelIn(root.filePath("en-us")),
        (SphinxModel{.acousticModel = root.filePath("en-us/en-us"),
            .dictionary = root.filePath("en-us/cmudict-en-us.dict"),
            .languageModel = root.filePath("en-us/en-us.lm.bin"),
            .language = "en-US"}));
}

TEST_F(SphinxModelTest, AModelWithEverythingInOneFolderIsFound)
{
    for (const char* file : {"mdef", "zh_cn.dic", "zh_cn.lm.dmp"})
        touch(QStringLiteral("zh_cn.cd_cont_5000/%1").arg(file));

    const auto model = sphinxModelIn(root.filePath("zh_cn.cd_cont_5000"));

    ASSERT_TRUE(model);
    EXPECT_EQ(model->language, "zh-CN");
    EXPECT_EQ(model->acousticModel, root.filePath("zh_cn.cd_cont_5000"));
}

TEST_F(SphinxModelTest, AFolderThatLacksSomethingIsNoModel)
{
    touch("no-dictionary/mdef");
    touch("no-dictionary/a.lm");
    touch("no-language/mdef");
    touch("no-language/a.dict");
    touch("only-phones/mdef");
    touch("only-phones/a.dict");
    touch("only-phones/a-phone.lm.bin");
    touch("no-sounds/a.dict");
    touch("no-sounds/a.lm");

    EXPECT_EQ(foundLanguage(), "none");
    EXPECT_FALSE(sphinxModelIn(root.filePath("nowhere")));
}

TEST_F(SphinxModelTest, MandarinIsPreferredThenEnglishThenWhateverThereIs)
{
    EXPECT_EQ(foundLanguage(), "none");
    installPackaged("de-de");
    EXPECT_EQ(foundLanguage(), "de-DE");
    installPackaged("en-us");
    EXPECT_EQ(foundLanguage(), "en-US");
    installPackaged("zh-cn");
    EXPECT_EQ(foundLanguage(), "zh-CN");
}

TEST_F(SphinxModelTest, ALanguageIsToldByTheNameOfTheFolder)
{
    for (const auto& [name, language] : std::vector<std::pair<QString, QString>>{
             {"mandarin", "zh-CN"}, {"fr", "fr"}, {"pt_br", "pt-BR"}, {"voxforge", ""}}) {
        installPackaged(name);
        EXPECT_EQ(sphinxModelIn(root.filePath(name))->language, language);
    }
}

TEST_F(SphinxModelTest, ANamedFolderIsUsedEvenIfABetterOneIsInstalled)
{
    installPackaged("zh-cn");
    installPackaged("en-us");

    EXPECT_EQ(findSphinxModel(root.filePath("en-us/"), {root.path()})->language, "en-US");
    EXPECT_FALSE(findSphinxModel(root.filePath("missing"), {root.path()}));
}

} // namespace
} // namespace tavrin
