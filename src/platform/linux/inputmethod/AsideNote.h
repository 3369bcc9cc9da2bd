#pragma once

#include <QString>

#include <optional>

namespace tavrin {

/// An engine that does not get the user's keys for the moment.
struct AsideEngine {
    QString inputMethod; ///< As InputMethod::name() has it.
    QString engine;

    friend bool operator==(const AsideEngine&, const AsideEngine&) = default;
};

/// A file that tells which engine is set aside while one is, and by which process: should that die,
/// the next start puts the engine back. Used by one thread.
class AsideNote {
public:
    /// @p file in the session's folder for run-time files; without one (empty) nothing is noted.
    explicit AsideNote(QString file);

    void write(const AsideEngine& engine) const;

    void remove() const;

    /// What a process that has ended has left; nothing while it runs, and from a file that makes no
    /// sense.
    [[nodiscard]] std::optional<AsideEngine> leftBehind() const;

private:
    QString m_file;
};

} // namespace tavrin
