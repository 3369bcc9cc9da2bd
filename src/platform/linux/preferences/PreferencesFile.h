#pragma once

#include <QHash>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace tavrin {

/// The settings file: one JSON object, 0600 in a folder that is 0700.
///
/// Reading is cheap: the file is parsed again only when it may have changed. A file that is no
/// JSON object is never written over; it is set aside under a dated name, and what was last read
/// from it (at the start: nothing) goes on to hold. Problems are logged once until they are over.
class PreferencesFile {
public:
    /// Changes to make: a value for a key, or none to remove it.
    using Changes = QHash<QString, std::optional<QVariant>>;

    enum class Outcome {
        Written,
        Busy, ///< Somebody seems to be writing the file right now; try again in `patience`.
        Failed,
    };

    /// A broken file younger than this may be half written, and is given time.
    static constexpr std::chrono::seconds patience{1};

    explicit PreferencesFile(QString path);

    /// What stands in the file.
    [[nodiscard]] const QVariantMap& members();

    /// Puts @p changes on top of what stands in the file, atomically and down to the disk.
    /// With @p wait false a file that may be half written is set aside instead of waited for.
    Outcome update(const Changes& changes, bool wait);

private:
    /// What tells one state of the file from another.
    struct Stamp {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = -1;
        std::chrono::nanoseconds modified{0};
        std::chrono::nanoseconds changed{0};

        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    enum class Condition {
        Absent,
        Good,
        Broken, ///< Not a JSON object.
        Unreadable, ///< It may be there, but cannot be seen or opened.
    };

    void refresh();
    void read(const Stamp& stamp);
    bool setAside();
    bool write(const QVariantMap& members);
    [[nodiscard]] bool ensureFolder() const;
    void complain(bool& complained, const QString& problem);
    [[nodiscard]] static bool isYoung(const Stamp& stamp, std::chrono::nanoseconds age);

    QString m_path;
    QVariantMap m_members;
    std::optional<Stamp> m_stamp; // Empty: look again.
    bool m_settled = false; // No second change can hide behind m_stamp.
    Condition m_condition = Condition::Absent;
    bool m_everRead = false;
    bool m_readingFailed = false;
    bool m_writingFailed = false;
};

} // namespace tavrin
