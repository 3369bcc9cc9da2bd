#include "support/QtPrinters.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The header that defines each text, by the text's name; several where several do.
QHash<QString, QStringList> headersOfTexts()
{
    static const QRegularExpression text(uR"(inline constexpr \S+\s+(\w+)\s*\{)"_s);
    QHash<QString, QStringList> headers;
    QDirIterator files(
        QStringLiteral(TAVRIN_SOURCES), {u"*Texts.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString content = QString::fromUtf8(file.readAll());
        for (const QRegularExpressionMatch& found : text.globalMatch(content))
            headers[found.captured(1)].append(file.fileName());
    }
    return headers;
}

// The linker takes two texts of one name for the same one, and keeps either.
TEST(TextNamesTest, NoTwoTextsShareAName)
{
    const QHash<QString, QStringList> headers = headersOfTexts();
    EXPECT_TRUE(headers.contains(u"betaNotice"_s)); // Or the search finds nothing at all.
    for (auto text = headers.begin(); text != headers.end(); ++text) {
        EXPECT_EQ(text->size(), 1)
            << text.key().toStdString() << " in " << text->join(u" and "_s).toStdString();
    }
}

} // namespace
} // namespace tavrin
