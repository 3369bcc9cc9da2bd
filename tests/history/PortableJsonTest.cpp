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

TEST(PortableJsonTest, NumbersOutOfRangeAreReplacedInTheirPlace)
{
    const QList<std::pair<QByteArray, QByteArray>> rows{
        {"[18446744073709551616]", "[18446744073709551e3 ]"},
        {"[-9223372036854775809,1]", "[-92233720368547758e2,1]"},
        {R"({"a":1e400 , "b":-1e+400})", R"({"a":1e308 , "b":-1e308 })"},
        {"[1.25E-400]", "[0        ]"},
        {"123456789012345678901", "12345678901234567e4  "},
        {'[' + QByteArray(310, '1') + ']', "[1e308" + QByteArray(305, ' ') + ']'},
    };
    for (const auto& [json, expected] : rows) {
        EXPECT_EQ(withNumbersInRange(json), expected);
        EXPECT_FALSE(QJsonDocument::fromJson('[' + expected + ']').isNull()) << expected.data();
    }
}

TEST(PortableJsonTest, OtherNumbersAndWhatIsNoNumberStay)
{
    for (const QByteArray json :
        {"[0,-0,1.5,-2e3,1E+5,18446744073709551615]", "[-9223372036854775808,9223372036854775807]",
            R"({"1e400":"1e400 \" 1e400"})", "[01e400]", "[1.e400]", "[.1e400]", "[1e400e1]",
            "[+1e400]", "[1e]", "[-]", "\"1e400", "\"\\", "true", "null", ""})
        EXPECT_EQ(withNumbersInRange(json), json);
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
