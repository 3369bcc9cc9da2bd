#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "platform/preferences/Preferences.h"

#include <memory>

namespace tavrin {

/// The settings in one JSON file, `$XDG_CONFIG_HOME/Tavrin/preferences.json`.
///
/// Changes gather for a moment and are then put on top of what stands in the file at that time, so
/// that keys which somebody else changed meanwhile keep their new values. Where the file cannot be
/// written, everything goes on in memory until it can, at the latest tried again when the program
/// quits. Values that JSON cannot hold are refused with a log line. Numbers come back as
/// qlonglong or double, lists as QVariantList, from the moment they are set.
class JsonPreferences final : public Preferences {
public:
    JsonPreferences(QString path, MainQueue& mainQueue);

    /// Writes what has not been written yet.
    ~JsonPreferences() override;

    JsonPreferences(const JsonPreferences&) = delete;
    JsonPreferences& operator=(const JsonPreferences&) = delete;

    /// The file of the user who runs the program.
    [[nodiscard]] static QString userPath();

    [[nodiscard]] QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;
    void synchronize() override;

private:
    void change(const QString& key, const std::optional<QVariant>& value);
    void writeLater(Seconds delay);
    void writeWhenPossible();

    MainQueue& m_mainQueue;
    mutable PreferencesFile m_file; // Reading looks at the disk.
    PreferencesFile::Changes m_changes; // Not yet in the file.
    std::unique_ptr<Timer> m_write;
};

} // namespace tavrin
