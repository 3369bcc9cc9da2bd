#pragma once

namespace tavrin {

/// The account page, as the rest of the program sees it. Main thread only.
class AccountPanel {
public:
    virtual ~AccountPanel() = default;

    /// Redraws the page and the sidebar from the stored cloud session.
    virtual void refreshAccountUI() = 0;

    /// Brings the program forward with the start step of the sign-in on the account page.
    virtual void showLoginDialog() = 0;
};

} // namespace tavrin
