#pragma once

#include <QString>

#include <functional>

namespace tavrin::testing {

/// Writes a line into the trace that the fakes of a test have in common. Without a test that wants
/// one it is null; tell() then does nothing.
using Note = std::function<void(const QString&)>;

inline void tell(const Note& note, const QString& line)
{
    if (note)
        note(line);
}

} // namespace tavrin::testing
