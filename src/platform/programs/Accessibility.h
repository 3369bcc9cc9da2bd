#pragma once

#include "base/TextRange.h"

#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

/// A reference to an element (a text field, a window) of another process. Released exactly once,
/// when it is destroyed; the element itself may be gone long before.
class AccessibleElement {
public:
    virtual ~AccessibleElement() = default;

    AccessibleElement(const AccessibleElement&) = delete;
    AccessibleElement& operator=(const AccessibleElement&) = delete;

protected:
    AccessibleElement() = default;
};

/// Owns a reference; null stands for "no element".
using ElementHandle = std::unique_ptr<AccessibleElement>;

/// The text attributes that can be read as a plain string.
enum class ElementAttribute {
    Role, ///< What kind of control it is, in the words of macOS ("AXTextArea") on every desktop.
    Title, ///< The title of a window.
};

/// Reads and writes the user interface of other programs.
///
/// Main thread only. Every call is bounded: with a hung program it gives up within half a second
/// and answers as for an element that is gone, and a value is cut off at 4 Mi UTF-16 units. All
/// positions and counts are in UTF-16 units; what an editor counts otherwise is converted behind
/// this port. Where an element is taken by pointer, null is allowed and reads as "unknown".
/// Answers come from another program and may be wrong in any way: negative, or beyond the end.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// Whether this process may use accessibility at all (Linux: the accessibility bus is there).
    [[nodiscard]] virtual bool isProcessTrusted() const = 0;

    /// As isProcessTrusted(), and lets the system ask the user for it. Linux: switches the bus on.
    virtual bool requestTrust() = 0;

    /// The processes that let others look into them at all. Linux: those that have joined the
    /// accessibility bus, which many do only at their start. Empty where it is not known, and on
    /// macOS, where it is all of them.
    [[nodiscard]] virtual std::optional<QSet<qint64>> exposedProcesses() = 0;

    /// The focused element of the process; null when it exposes none.
    [[nodiscard]] virtual ElementHandle focusedElement(qint64 processIdentifier) = 0;

    /// The focused element of whatever process has the keyboard; null when unknown.
    [[nodiscard]] virtual ElementHandle systemFocusedElement() = 0;

    /// The focused window of the process; null when unknown.
    [[nodiscard]] virtual ElementHandle focusedWindow(qint64 processIdentifier) = 0;

    /// A second reference to the same element.
    [[nodiscard]] virtual ElementHandle retain(const AccessibleElement& element) = 0;

    /// The process that owns the element; empty when it cannot be read.
    [[nodiscard]] virtual std::optional<qint64> processIdentifier(
        const AccessibleElement* element) = 0;

    /// Empty when it cannot be read or is no string.
    [[nodiscard]] virtual std::optional<QString> attribute(
        ElementAttribute name, const AccessibleElement* element) = 0;

    /// A field that hides what is typed into it. Nothing of it may be read.
    [[nodiscard]] virtual bool isProtected(const AccessibleElement* element) = 0;

    /// A terminal, be it a part of a program that is something else. False when unknown.
    [[nodiscard]] virtual bool isTerminal(const AccessibleElement* element) = 0;

    /// The whole text; an attributed text as plain text. Empty optional when unreadable, and for a
    /// protected element.
    [[nodiscard]] virtual std::optional<QString> value(const AccessibleElement* element) = 0;

    /// The selection, or the caret as a range of length 0.
    [[nodiscard]] virtual std::optional<TextRange> selectedTextRange(
        const AccessibleElement* element) = 0;

    [[nodiscard]] virtual std::optional<qint64> numberOfCharacters(
        const AccessibleElement* element) = 0;

    /// The text of @p range. Empty optional when the element cannot answer for this range.
    [[nodiscard]] virtual std::optional<QString> stringForRange(
        TextRange range, const AccessibleElement* element) = 0;

    [[nodiscard]] virtual bool isSelectedTextSettable(const AccessibleElement* element) = 0;

    /// Replaces the selection by @p text.
    virtual bool setSelectedText(const QString& text, const AccessibleElement* element) = 0;

    [[nodiscard]] virtual bool isValueSettable(const AccessibleElement* element) = 0;

    /// Replaces the whole text.
    virtual bool setValue(const QString& text, const AccessibleElement* element) = 0;

    virtual bool setSelectedTextRange(TextRange range, const AccessibleElement* element) = 0;

    /// Gives the element the keyboard focus within its window.
    virtual bool setFocused(const AccessibleElement* element) = 0;

    /// Makes @p window the focused window of the process.
    virtual bool setFocusedWindow(qint64 processIdentifier, const AccessibleElement* window) = 0;
};

} // namespace tavrin
