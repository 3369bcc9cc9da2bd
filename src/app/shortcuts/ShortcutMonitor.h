#pragma once

#include "app/vocabulary/OperationMode.h"
#include "base/CallbackGuard.h"

#include <functional>
#include <memory>
#include <optional>

class QString;

namespace tavrin {

class KeyMonitor;
class KeyObservation;
class MainQueue;
class Settings;
struct KeyEvent;

/// Turns key presses anywhere on the desktop into operations and cancellations. Main thread only.
///
/// A key that alone is a shortcut (an Option key) counts when it goes down, whatever is pressed
/// with it later. Presses while another program has the keyboard reach that program too; in
/// Tavrin's own windows they are swallowed.
class ShortcutMonitor {
public:
    /// What key presses lead to; all called on the main thread.
    struct Actions {
        /// A modifier key alone was the shortcut, and reached another program: before what it does.
        std::function<void()> coverModifierKey;
        std::function<bool()> isRecording;
        std::function<void()> handleEscape;
        std::function<void(OperationMode)> toggleOperationMode;
    };

    /// @param keyMonitor, mainQueue, settings must outlive the monitor.
    ShortcutMonitor(
        KeyMonitor& keyMonitor, MainQueue& mainQueue, Settings& settings, Actions actions);
    ~ShortcutMonitor();

    ShortcutMonitor(const ShortcutMonitor&) = delete;
    ShortcutMonitor& operator=(const ShortcutMonitor&) = delete;

    /// Starts to watch the keyboard. Called once, at launch.
    void configureHotKey();

    /// A fresh press of Escape while recording.
    [[nodiscard]] bool isEscapeEvent(const KeyEvent& event) const;

    /// The operation that @p event starts or finishes; empty for none. Keeps track of the Option
    /// keys that are held: each event may be given only once.
    [[nodiscard]] std::optional<OperationMode> operationForHotKeyEvent(const KeyEvent& event);

    /// The operation that has this shortcut now. Where operations share one, dictation comes before
    /// translation before chat.
    [[nodiscard]] std::optional<OperationMode> operationForShortcutIdentifier(
        const QString& identifier);

    /// Forgets which Option keys are held, so that the next press counts in any case.
    void clearHeldKeys();

private:
    /// The Option keys that were seen pressed and not yet released.
    struct HeldKeys {
        bool rightOptionDown = false;
        bool leftOptionDown = false;
    };

    /// What watches the keyboard: while another program has it, and while a window of ours has.
    struct Monitors {
        std::unique_ptr<KeyObservation> globalMonitor;
        std::unique_ptr<KeyObservation> localMonitor;
    };

    /// Who has the keyboard when an event comes.
    enum class Keyboard { OfAnotherProgram, Ours };

    /// Acts on @p event; whether it meant anything.
    bool handle(const KeyEvent& event, Keyboard keyboard);
    [[nodiscard]] QString shortcutIdentifierForEvent(const KeyEvent& event);

    KeyMonitor& m_keyMonitor;
    MainQueue& m_mainQueue;
    Settings& m_settings;
    Actions m_actions;
    HeldKeys m_heldKeys;
    Monitors m_monitors;
    CallbackGuard m_guard;
};

} // namespace tavrin
