#pragma once

namespace tavrin {

/// The small window with the preferred writing tone and sample. Main thread only.
class PersonalizationWindow {
public:
    virtual ~PersonalizationWindow() = default;

    /// Fills the window from the preferences and shows it in front.
    virtual void showPersonalizationWindow() = 0;
};

} // namespace tavrin
