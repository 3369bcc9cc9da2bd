#pragma once

#include "platform/linux/process/ProcessIdentity.h"
#include "platform/linux/x11/typing/TypingPlan.h"

#include <QString>

namespace tavrin {

/// The key codes without symbols, lent for typing and given back empty.
///
/// Which ones are lent, and with what symbols, stands in a file of each process while they are, so
/// that the next start gives them back when a process had no chance to. Used by one thread.
class SpareCodes {
public:
    /// @p stateFile is what the names of the files begin with, in the session's folder for run-time
    /// files; without one (empty) a crash leaves the codes as they are, where they hurt nobody.
    /// @p owner is the process that lends.
    SpareCodes(const X11Connection& connection, QString stateFile,
        const ProcessIdentity& owner = thisProcess());

    /// The file of @p owner.
    [[nodiscard]] static QString fileOf(const QString& stateFile, const ProcessIdentity& owner);

    /// Gives back what processes have left behind that are no more, as far as it is still theirs:
    /// one that lives may be typing, and a code that has other symbols by now is somebody else's.
    void recover();

    /// The codes that may be used.
    [[nodiscard]] std::vector<xcb_keycode_t> codes(const KeyboardMap& map) const;

    /// Gives the codes their symbols, in one request.
    void assign(const std::vector<CodeAssignment>& assignments);

    /// Empties every code that is lent.
    void restore();

private:
    void recover(const QString& path);
    void empty(const std::vector<CodeAssignment>& codes) const;
    void note() const;

    const X11Connection& m_connection;
    QString m_stateFile;
    ProcessIdentity m_owner;
    std::vector<CodeAssignment> m_lent; // With the symbols that each got last.
};

} // namespace tavrin
