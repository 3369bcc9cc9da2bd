#pragma once

#include "platform/linux/x11/TypingPlan.h"

#include <QString>

namespace tavrin {

/// The key codes without symbols, lent for typing and given back empty.
///
/// Which ones are lent stands in a file while they are, so that the next start gives them back when
/// this process had no chance to. Used by one thread.
class SpareCodes {
public:
    /// @p stateFile in the session's folder for run-time files; without one (empty) a crash leaves
    /// the codes as they are, where they hurt nobody.
    SpareCodes(const X11Connection& connection, QString stateFile);

    /// Gives back what an earlier run left behind.
    void recover();

    /// The codes that may be used.
    [[nodiscard]] std::vector<xcb_keycode_t> codes(const KeyboardMap& map) const;

    /// Gives the codes their symbols, in one request.
    void assign(const std::vector<CodeAssignment>& assignments);

    /// Empties every code that is lent.
    void restore();

private:
    void note() const;

    const X11Connection& m_connection;
    QString m_stateFile;
    std::vector<xcb_keycode_t> m_lent;
};

} // namespace tavrin
