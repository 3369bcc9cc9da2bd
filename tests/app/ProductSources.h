#pragma once

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QString>

namespace tavrin::testing {

/// The contents of the product's files whose names fit @p pattern, by their paths.
[[nodiscard]] inline QMap<QString, QString> productSources(const QString& pattern)
{
    QMap<QString, QString> contents;
    QDirIterator files(
        QStringLiteral(TAVRIN_SOURCES), {pattern}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            contents[file.fileName()] = QString::fromUtf8(file.readAll());
    }
    return contents;
}

} // namespace tavrin::testing
