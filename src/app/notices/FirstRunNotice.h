#pragma once

#include "base/CallbackGuard.h"

#include <functional>

namespace tavrin {

class AccountPanel;
class Alerts;
class Localization;
class MainQueue;
class MainWindow;
class Preferences;

/// Welcomes whoever starts the program for the first time, and leads those who are not signed in to
/// the account page. Main thread only.
class FirstRunNotice {
public:
    struct Neighbours {
        AccountPanel& accountPanel;
        Alerts& alerts;
        const Localization& localization;
        MainQueue& mainQueue;
        MainWindow& mainWindow;
        Preferences& preferences;
    };

    /// @param neighbours must outlive the notice.
    explicit FirstRunNotice(const Neighbours& neighbours);

    /// The welcome, once in the life of the installation; after it, and at every later start, the
    /// sign-in when no cloud session is stored.
    void showBetaOnboardingIfNeeded();

private:
    void showBetaInstallationGuide(std::function<void()> afterwards);
    void offerSignIn();

    Neighbours m_neighbours;
    CallbackGuard m_guard;
};

} // namespace tavrin
