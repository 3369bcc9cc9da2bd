#pragma once

#include "history/HistoryStore.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/Preferences.h"
#include "platform/qt/BackgroundThread.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtMainQueue.h"

#include <QHash>
#include <QTemporaryDir>

#include <memory>

namespace bench {

class MemoryPreferences final : public tavrin::Preferences {
public:
    [[nodiscard]] QVariant value(const QString& key) const override { return m_values.value(key); }

    void setValue(const QString& key, const QVariant& value) override { m_values[key] = value; }

    void remove(const QString& key) override { m_values.remove(key); }

    void synchronize() override { }

private:
    QHash<QString, QVariant> m_values;
};

class FolderInfo final : public tavrin::SystemInfo {
public:
    explicit FolderInfo(QString folder)
        : m_folder(std::move(folder))
    {
    }

    [[nodiscard]] QString localizedHostName() const override { return {}; }

    [[nodiscard]] QString bundleShortVersion() const override { return {}; }

    [[nodiscard]] QString bundleVersion() const override { return {}; }

    [[nodiscard]] QString temporaryDirectory() const override { return m_folder; }

    [[nodiscard]] QString applicationSupportDirectory() const override { return m_folder; }

    [[nodiscard]] QString environmentVariable(const QString&) const override { return {}; }

    [[nodiscard]] QString speechLanguage() const override { return {}; }

private:
    QString m_folder;
};

/// Counts what it passes on, so that the end of a write can be awaited.
class CountingQueue final : public tavrin::BackgroundQueue {
public:
    explicit CountingQueue(tavrin::MainQueue& mainQueue)
        : m_queue(mainQueue)
    {
    }

    void run(Task work, Task done) override;

    void drain() override { m_queue.drain(); }

    [[nodiscard]] bool isIdle() const { return m_running == 0; }

private:
    tavrin::BackgroundThread m_queue;
    int m_running = 0;
};

/// A history of so many records, on the ports that the program runs on, in a folder of its own.
class Stage {
public:
    explicit Stage(int records);

    [[nodiscard]] tavrin::HistoryStore& store() { return *m_store; }

    [[nodiscard]] MemoryPreferences& preferences() { return m_preferences; }

    [[nodiscard]] QString folder() const { return m_folder.path(); }

    [[nodiscard]] QString path() const;

    /// The file as it stands.
    [[nodiscard]] QByteArray content() const;

    /// As a fresh start of the program: nothing is read yet.
    void restart();

    /// Puts back the file as it was generated.
    void reset();

    /// Runs the event loop until nothing is being written.
    void awaitWritten();

    /// The longest time in milliseconds in which the event loop did not come round while @p work
    /// ran and its writes went on in the background.
    [[nodiscard]] double longestBlocking(const std::function<void()>& work);

private:
    QTemporaryDir m_folder;
    QByteArray m_generated;
    MemoryPreferences m_preferences;
    FolderInfo m_systemInfo;
    tavrin::QtClock m_clock;
    tavrin::QtMainQueue m_mainQueue;
    CountingQueue m_queue;
    std::unique_ptr<tavrin::HistoryStore> m_store;
};

/// A result as people dictate them, the @p index-th of many.
[[nodiscard]] tavrin::NewHistoryRecord result(int index);

} // namespace bench
