#pragma once

#include "platform/programs/Accessibility.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>

namespace tavrin::testing {

/// One text field (or window) of another program, as the test wants it to behave.
struct FakeElement {
    qint64 processIdentifier = 0;
    std::optional<QString> role = QStringLiteral("AXTextArea");
    std::optional<QString> title;
    bool isProtected = false;
    bool isTerminal = false;

    QString text;
    TextRange selection{0, 0};

    // What the field reveals, and what it lets others write.
    bool exposesProcess = true;
    bool exposesText = true;
    bool exposesSelection = true;
    bool exposesCount = true;
    bool exposesStringForRange = true;
    bool selectedTextSettable = true;
    bool valueSettable = true;
    bool writesSucceed = true;
    bool selectedTextWritesSucceed = true;
    bool deniedWritesAreDone = false; ///< A write of the selection that fails is carried out.

    // Lies: answers that take the place of the true ones.
    std::optional<QString> claimedText;
    std::optional<TextRange> claimedSelection;
    std::optional<qint64> claimedCount;

    /// Replaces the selection, as typing or pasting does.
    void insert(const QString& inserted);
};

/// Other programs' elements. The test owns each element and keeps it as long as it likes.
class InMemoryAccessibility final : public Accessibility {
public:
    using ElementPointer = std::shared_ptr<FakeElement>;

    bool trusted = true;
    bool trustIsGranted = false; ///< What the user answers when asked.
    QHash<qint64, ElementPointer> focusedElements; ///< By process.
    QHash<qint64, ElementPointer> focusedWindows; ///< By process.
    ElementPointer systemFocus;
    QSet<qint64> exposed; ///< Processes that let others look into them.
    std::function<void()> onFocusedElement; ///< Told when a process is asked for its element.

    // What was asked of it.
    QStringList calls; ///< The writes, in order: "setFocused", "setSelectedText" …
    int reads = 0; ///< Reads of text, selection, counts and ranges.
    int liveReferences = 0; ///< Handles given out and not yet released.

    [[nodiscard]] bool isProcessTrusted() const override { return trusted; }

    bool requestTrust() override;

    [[nodiscard]] std::optional<QSet<qint64>> exposedProcesses() override
    {
        return trusted ? std::optional(exposed) : std::nullopt;
    }

    [[nodiscard]] ElementHandle focusedElement(qint64 processIdentifier) override;
    [[nodiscard]] ElementHandle systemFocusedElement() override;
    [[nodiscard]] ElementHandle focusedWindow(qint64 processIdentifier) override;
    [[nodiscard]] ElementHandle retain(const AccessibleElement& element) override;
    [[nodiscard]] std::optional<qint64> processIdentifier(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> attribute(
        ElementAttribute name, const AccessibleElement* element) override;
    [[nodiscard]] bool isProtected(const AccessibleElement* element) override;
    [[nodiscard]] bool isTerminal(const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> value(const AccessibleElement* element) override;
    [[nodiscard]] std::optional<TextRange> selectedTextRange(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<qint64> numberOfCharacters(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> stringForRange(
        TextRange range, const AccessibleElement* element) override;
    [[nodiscard]] bool isSelectedTextSettable(const AccessibleElement* element) override;
    bool setSelectedText(const QString& text, const AccessibleElement* element) override;
    [[nodiscard]] bool isValueSettable(const AccessibleElement* element) override;
    bool setValue(const QString& text, const AccessibleElement* element) override;
    bool setSelectedTextRange(TextRange range, const AccessibleElement* element) override;
    bool setFocused(const AccessibleElement* element) override;
    bool setFocusedWindow(qint64 processIdentifier, const AccessibleElement* window) override;

private:
    class Reference;

    [[nodiscard]] ElementHandle refer(const ElementPointer& element);
    [[nodiscard]] static FakeElement* target(const AccessibleElement* element);
};

} // namespace tavrin::testing
