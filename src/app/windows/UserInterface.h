#pragma once

#include <functional>
#include <memory>

class QString;

namespace tavrin {

class AccountPanel;
class AudioEnvironment;
class HistoryStore;
class Localization;
class MainWindow;
class RecordingHUD;
class Settings;
class ShortcutSettings;
class StatusMenu;
class TavrinAPI;
struct Platform;

/// All windows of the program, built by the layer above and owned by the controller. The parts
/// live as long as the whole. Main thread only.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    /// Loads the image "TavrinIcon-1024" and makes it the program's icon. False when it is missing;
    /// the program then goes on without.
    virtual bool loadApplicationIcon() = 0;

    [[nodiscard]] virtual RecordingHUD& hud() = 0;
    [[nodiscard]] virtual MainWindow& mainWindow() = 0;
    [[nodiscard]] virtual AccountPanel& accountPanel() = 0;

    /// Shows the main window with the finished results.
    virtual void showHistoryWindow() = 0;

    /// Shows the window that sets how texts are to be written.
    virtual void showPersonalizationWindow() = 0;

    /// Reads the state of every permission, the account and the last delivery afresh for the page
    /// that shows them.
    virtual void refreshHealthStatus() = 0;

    /// The dictionary has changed: shows it, where it is shown.
    virtual void refreshDictionaryView() = 0;
};

/// What the windows and their pages are built from; all of it outlives them.
struct UserInterfaceNeighbours {
    TavrinAPI& api;
    AudioEnvironment& audioEnvironment;
    HistoryStore& historyStore;
    const Localization& localization;
    Platform& platform;
    Settings& settings;
    ShortcutSettings& shortcutSettings;
    StatusMenu& statusMenu;
    std::function<void()> endCorrectionWatch; ///< Without learning from it.
    std::function<void(const QString& name)> playSound;
    std::function<void()> showMainWindow; ///< Of the controller: brings the program forward too.
};

using CreateUserInterface =
    std::function<std::unique_ptr<UserInterface>(const UserInterfaceNeighbours&)>;

} // namespace tavrin
