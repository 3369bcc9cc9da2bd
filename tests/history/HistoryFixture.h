#pragma once

#include "history/HistoryStore.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// A history in a folder of its own.
class HistoryFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    VirtualTime time;
    InMemoryPreferences preferences;
    InMemorySystemInfo systemInfo;
    InMemoryBackgroundQueue background;
    HistoryStore store{{preferences, time, systemInfo, background}};

    void SetUp() override { systemInfo.supportFolder = folder.path(); }

    [[nodiscard]] QString path() const
    {
        return folder.filePath(QStringLiteral("Tavrin/TranscriptionHistory.json"));
    }

    /// Puts @p content where the history is, or @p where below the folder.
    void putFile(const QByteArray& content,
        const QString& where = QStringLiteral("Tavrin/TranscriptionHistory.json"))
    {
        const QString file = folder.filePath(where);
        QDir().mkpath(QFileInfo(file).path());
        QFile target(file);
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
        ASSERT_EQ(target.write(content), content.size());
    }

    /// The file as it stands when everything is written.
    [[nodiscard]] QByteArray file()
    {
        background.drain();
        QFile source(path());
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList ids()
    {
        QStringList ids;
        for (const HistoryRecord& record : store.historyRecords())
            ids.append(record.id());
        return ids;
    }

    void save(const QString& transcript, const QString& finalText)
    {
        store.saveHistoryTranscript({.transcript = transcript, .finalText = finalText});
    }
};

} // namespace tavrin::testing
