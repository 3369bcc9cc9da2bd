#include "app/ProductSources.h"
#include "support/QtPrinters.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The header that defines each text, by the text's name; several where several do.
QHash<QString, QStringList> headersOfTexts()
{
    static const QRegularExpression text(uR"(inline constexpr \S+\s+(\w+)\s*\{)"_s);
    const QMap<QString, QString> tables = testing::productSources(u"*Texts.h"_s);
    QHash<QString, QStringList> headers;
    for (auto table = tables.begin(); table != tables.end(); ++table) {
        for (const QRegularExpressionMatch& found : text.globalMatch(*table))
            headers[found.captured(1)].append(table.key());
    }
    return headers;
}

// The linker takes two texts of one name for the same one, and keeps either.
TEST(TextTablesTest, NoTwoTextsShareAName)
{
    const QHash<QString, QStringList> headers = headersOfTexts();
    EXPECT_TRUE(headers.contains(u"betaNotice"_s)); // Or the search finds nothing at all.
    for (auto text = headers.begin(); text != headers.end(); ++text) {
        EXPECT_EQ(text->size(), 1)
            << text.key().toStdString() << " in " << text->join(u" and "_s).toStdString();
    }
}

TEST(TextTablesTest, NoTwoTablesShareAName)
{
    const QStringList paths = testing::productSources(u"*Texts.h"_s).keys();
    EXPECT_FALSE(paths.isEmpty()); // Or the search finds nothing at all.
    QSet<QString> names;
    for (const QString& path : paths) {
        const QString name = path.section(u'/', -1);
        EXPECT_FALSE(names.contains(name)) << name.toStdString();
        names.insert(name);
    }
}

TEST(TextTablesTest, NoTextOfTheInterfaceStandsAmongTheCode)
{
    static const QRegularExpression chinese(u"(?=\\p{L})\\p{Han}"_s);
    const QMap<QString, QString> code = testing::productSources(u"*.cpp"_s);
    EXPECT_FALSE(code.isEmpty()); // Or the search finds nothing at all.
    for (auto file = code.begin(); file != code.end(); ++file) {
        EXPECT_FALSE(file->contains(chinese))
            << file.key().toStdString() << ": " << chinese.match(*file).captured().toStdString();
    }
}

} // namespace
} // namespace tavrin
