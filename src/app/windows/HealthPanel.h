#pragma once

namespace tavrin {

/// The permissions and health page, as the rest of the program sees it. Main thread only.
class HealthPanel {
public:
    virtual ~HealthPanel() = default;

    /// Reads the state of every permission, the account and the last delivery afresh.
    virtual void refreshHealthStatus() = 0;
};

} // namespace tavrin
