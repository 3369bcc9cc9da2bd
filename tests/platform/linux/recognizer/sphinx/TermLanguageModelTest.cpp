#include "platform/linux/recognizer/sphinx/TermLanguageModel.h"

#include <QFile>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(TermLanguageModelTest, EveryWordIsEquallyLikelyAndInOrder)
{
    EXPECT_EQ(termLanguageModelText({"slack", "chatgpt", "notion"}).toStdString(),
        "\\data\\\nngram 1=5\n\n\\1-grams:\n"
        "-99.0000 <s>\n-1.0000 </s>\n"
        "-0.5229 chatgpt\n-0.5229 notion\n-0.5229 slack\n\n\\end\\\n");
}

TEST(TermLanguageModelTest, WithoutWordsThereIsStillAModel)
{
    EXPECT_TRUE(termLanguageModelText({}).contains("ngram 1=2\n"));
}

TEST(TermLanguageModelTest, TheFileHoldsTheTextWhileTheModelLives)
{
    QByteArray path;
    {
        const TermLanguageModel model({"notion"});
        path = model.path();
        QFile file(QFile::decodeName(path));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), termLanguageModelText({"notion"}));
    }
    EXPECT_FALSE(QFile::exists(QFile::decodeName(path)));
}

} // namespace
} // namespace tavrin
