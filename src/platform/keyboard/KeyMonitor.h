#pragma once

#include <QFlags>

#include <functional>
#include <memory>

namespace tavrin {

/// The modifier keys that shortcuts are made of. Linux: Option is Alt, Command is Super.
enum class KeyModifier : unsigned {
    Shift = 0x20000,
    Control = 0x40000,
    Option = 0x80000,
    Command = 0x100000,
};
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

/// The keys that Tavrin tells apart, by their virtual key codes on macOS; other keys come with a
/// code that is none of these.
namespace key_codes {
inline constexpr int space = 49;
inline constexpr int escape = 53;
inline constexpr int leftOption = 58;
inline constexpr int rightOption = 61;
} // namespace key_codes

struct KeyEvent {
    enum class Kind {
        KeyDown,
        FlagsChanged, ///< A modifier key went down or up; `modifiers` is the state afterwards.
    };

    Kind kind = Kind::KeyDown;
    int keyCode = -1;
    KeyModifiers modifiers;
    bool isRepeat = false;

    friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
};

/// Ends the observation when destroyed (main thread).
class KeyObservation {
public:
    virtual ~KeyObservation() = default;
};

/// Watches the keyboard without grabbing it. Installed and removed on the main thread.
///
/// Linux: where the key right of the space bar is AltGr, which types characters with others, it is
/// Right Option only when it was tapped alone, and is reported down and up once it is up.
class KeyMonitor {
public:
    /// Called on any thread. Other programs get the event too; it cannot be held back.
    using GlobalHandler = std::function<void(const KeyEvent&)>;
    /// Called on the main thread. True swallows the event.
    using LocalHandler = std::function<bool(const KeyEvent&)>;

    virtual ~KeyMonitor() = default;

    /// Key presses and modifier changes while another program has the keyboard. Null when the
    /// system refuses (no permission, no X server extension); that has been logged then.
    [[nodiscard]] virtual std::unique_ptr<KeyObservation> addGlobalMonitor(
        GlobalHandler handler) = 0;

    /// The same while one of Tavrin's own windows has the keyboard.
    [[nodiscard]] virtual std::unique_ptr<KeyObservation> addLocalMonitor(LocalHandler handler) = 0;
};

} // namespace tavrin
