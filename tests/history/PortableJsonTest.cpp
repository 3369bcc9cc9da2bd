#include "history/PortableJson.h"

#include "support/QtPrinters.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

TEST(PortableJsonTest, HalvesOfPairsAreReplacedAndPairsStay)
{
    EXPECT_EQ(withoutLoneSurrogates(R"("\ud83d")"), R"("\ufffd")"_ba);
    EXPECT_EQ(withoutLoneSurrogates(R"("\uDE00\uD83D")"), R"("\ufffd\ufffd")"_ba);
    EXPECT_EQ(withoutLoneSurrogates(R"("\ud83d\ud83d\ude00")"), R"("\ufffd\ud83d\ude00")"_ba);
    EXPECT_EQ(withoutLoneSurrogates(R"("\ud83d\n\ude00")"), R"("\ufffd\n\ufffd")"_ba);
}

TEST(PortableJsonTest, OtherEscapesStay)
{
    for (const QByteArray json : {R"("\u4e2d \" \n \\ud83d")", R"("\\\\ud83d")", R"("\u")", "\\",
             R"("\ud83)", R"("\ud8zz")", ""})
        EXPECT_EQ(withoutLoneSurrogates(json), json);
}

TEST(PortableJsonTest, AnyTextIsReadBackAsItWas)
{
    for (const QString& text : {QString(QChar(0xFEFF)) + u"a"_s, u"a\u202Eb\u200F"_s,
             QString(QChar(u'\0')) + u"b"_s, u"\uFFFF\uFFFE"_s}) {
        const QJsonObject object{{u"text"_s, text}};
        const QByteArray json = portableJson(QJsonDocument(object));
        EXPECT_EQ(QJsonDocument::fromJson(json).object(), object);
    }
}

} // namespace
} // namespace tavrin
