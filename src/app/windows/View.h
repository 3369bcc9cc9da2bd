#pragma once

namespace tavrin {

/// Draws a content, a value that holds whatever differs from one time to the next: what is listed,
/// chosen, switched on, said. The captions around it the view looks up in the texts of its page.
/// What the user does it reports to the controller, which makes the next content. Main thread only.
template <typename Content>
class View {
public:
    virtual ~View() = default;

    /// Shows @p content, without reporting that anything was chosen.
    virtual void setContent(const Content& content) = 0;
};

} // namespace tavrin
