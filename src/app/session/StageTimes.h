#pragma once

#include "base/Seconds.h"

#include <QString>

#include <vector>

namespace tavrin {

/// How long each stage of a session took, for one line in the log. A value; moments are uptimes.
class StageTimes {
public:
    /// A new session begins at @p now.
    void begin(Seconds now);

    /// Stage @p name, a literal, has ended at @p now; it began where the one before it ended.
    void ended(const char* name, Seconds now);

    /// "start 8.1 ms, recording 3204.0 ms, …" in the order of the stages.
    [[nodiscard]] QString toString() const;

private:
    struct Stage {
        const char* name;
        Seconds duration;
    };

    Seconds m_last{0};
    std::vector<Stage> m_stages;
};

} // namespace tavrin
