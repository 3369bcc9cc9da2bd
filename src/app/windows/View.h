#pragma once

namespace tavrin {

/// Draws a content, a value that holds everything that is shown, and nothing else: what the user
/// does it reports to the controller, which makes the next content. Main thread only.
template <typename Content>
class View {
public:
    virtual ~View() = default;

    /// Shows @p content, without reporting that anything was chosen.
    virtual void setContent(const Content& content) = 0;
};

} // namespace tavrin
