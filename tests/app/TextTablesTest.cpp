#include "support/QtPrinters.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The contents of the product's files whose names fit @p pattern, by their paths.
QHash<QString, QString> sources(const QString& pattern)
{
    QHash<QString, QString> contents;
    QDirIterator files(
        QStringLiteral(TAVRIN_SOURCES), {pattern}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            contents[file.fileName()] = QString::fromUtf8(file.readAll());
    }
    return contents;
}

/// The header that defines each text, by the text's name; several where several do.
QHash<QString, QStringList> headersOfTexts()
{
    static const QRegularExpression text(uR"(inline constexpr \S+\s+(\w+)\s*\{)"_s);
    const QHash<QString, QString> tables = sources(u"*Texts.h"_s);
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

TEST(TextTablesTest, NoTextOfTheInterfaceStandsAmongTheCode)
{
    static const QRegularExpression chinese(u"\\p{Han}"_s);
    const QHash<QString, QString> code = sources(u"*.cpp"_s);
    EXPECT_FALSE(code.isEmpty()); // Or the search finds nothing at all.
    for (auto file = code.begin(); file != code.end(); ++file) {
        EXPECT_FALSE(file->contains(chinese))
            << file.key().toStdString() << ": " << chinese.match(*file).captured().toStdString();
    }
}

} // namespace
} // namespace tavrin
