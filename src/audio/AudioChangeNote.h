#pragma once

#include <QList>
#include <QString>

#include <memory>
#include <optional>

class QLockFile;

namespace tavrin {

/// What the program changed of the machine's sound, in terms that outlive the process.
struct AudioChanges {
    /// An output device that was silenced: by its mute (then previousMute is set) or its volume.
    struct Output {
        QString uid;
        std::optional<quint32> previousMute;
        std::optional<float> previousVolume;

        friend bool operator==(const Output&, const Output&) = default;
    };

    /// A default input device that was replaced.
    struct Input {
        QString previousUid;
        QString preferredUid;

        friend bool operator==(const Input&, const Input&) = default;
    };

    QList<Output> outputs;
    QList<Input> inputs;

    [[nodiscard]] bool isEmpty() const { return outputs.isEmpty() && inputs.isEmpty(); }

    friend bool operator==(const AudioChanges&, const AudioChanges&) = default;
};

/// The changes in force, in a small file, so that the next start can undo what a crash left.
/// Only the user may read it. Main thread only.
///
/// A lock beside the file belongs to the process that wrote it: notes of a living process are
/// invisible to others, and others write none while it has one. A note that cannot be written is
/// logged and forgone.
class AudioChangeNote {
public:
    /// @param folder where the file lies; created when first needed.
    explicit AudioChangeNote(const QString& folder);
    ~AudioChangeNote();

    AudioChangeNote(const AudioChangeNote&) = delete;
    AudioChangeNote& operator=(const AudioChangeNote&) = delete;

    /// Replaces this process's note; removes it when there is nothing to note.
    void write(const AudioChanges& changes);

    /// What a dead process noted; empty without such a note, or when it is unreadable. The note
    /// then is this process's own: it stays until the next write().
    [[nodiscard]] AudioChanges adopt();

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_claim;
    AudioChanges m_written; ///< While it is claimed.
};

} // namespace tavrin
