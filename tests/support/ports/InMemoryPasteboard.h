#pragma once

#include "platform/Pasteboard.h"

#include <QString>

namespace tavrin::testing {

/// A pasteboard that the test can read.
class InMemoryPasteboard final : public Pasteboard {
public:
    bool accepts = true; ///< False: every write is refused.

    bool setString(const QString& text) override
    {
        m_string = accepts ? text : QString();
        return accepts;
    }

    [[nodiscard]] const QString& string() const { return m_string; }

private:
    QString m_string;
};

} // namespace tavrin::testing
