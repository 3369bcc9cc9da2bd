#pragma once

#include "platform/Pasteboard.h"
#include "support/ports/Note.h"

#include <QString>

#include <utility>

namespace tavrin::testing {

/// A pasteboard that the test can read.
class InMemoryPasteboard final : public Pasteboard {
public:
    /// @param note is told of "pasteboard: TEXT" when a program writes.
    explicit InMemoryPasteboard(Note note = {})
        : m_note(std::move(note))
    {
    }

    bool accepts = true; ///< False: every write is refused.

    bool setString(const QString& text) override
    {
        tell(m_note, QStringLiteral("pasteboard: ") + text);
        m_string = accepts ? text : QString();
        return accepts;
    }

    [[nodiscard]] const QString& string() const { return m_string; }

private:
    Note m_note;
    QString m_string;
};

} // namespace tavrin::testing
