#pragma once

#include "base/CallbackGuard.h"
#include "base/Completion.h"
#include "base/Seconds.h"
#include "delivery/EditorText.h"
#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/programs/Accessibility.h"
#include "platform/programs/RunningApplication.h"

#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

class MainQueue;
class Pasteboard;
class TargetContext;
class Workspace;
struct SimplifiedText;

/// How a delivery ended. `verified` means no more than that it is not known to have failed.
struct DeliveryOutcome {
    bool verified = false;
    QString reason; ///< Why not; null when verified.

    friend bool operator==(const DeliveryOutcome&, const DeliveryOutcome&) = default;
};

/// Puts a text at the cursor of the target application: onto the pasteboard, by the paste
/// shortcut, and where an editor visibly swallowed that, typed, and at last written directly. In
/// every outcome the text is on the pasteboard.
///
/// Each step begins once the keys of the one before are really out. Where the desktop can tell what
/// the target did about the paste, a text that the target has fetched is never typed too, a target
/// that is only slow is waited for, and a text that nobody fetched is not called delivered.
///
/// One delivery at a time. Main thread only; everything passed in must outlive it.
class TextDelivery {
public:
    struct Ports {
        Pasteboard& pasteboard;
        Workspace& workspace;
        Accessibility& accessibility;
        SyntheticKeyboard& keyboard;
        MainQueue& mainQueue;
    };

    TextDelivery(const Ports& ports, TargetContext& target);
    ~TextDelivery();

    TextDelivery(const TextDelivery&) = delete;
    TextDelivery& operator=(const TextDelivery&) = delete;

    /// Delivers @p text into the target that was captured at the start of the recording.
    void pasteText(const QString& text, Completion<DeliveryOutcome> completion);

    // What an editor shows. All accept null and answer "unknown" for it.
    [[nodiscard]] std::optional<QString> textValueForElement(const AccessibleElement* element);
    [[nodiscard]] std::optional<TextRange> selectedRangeForElement(
        const AccessibleElement* element);
    [[nodiscard]] std::optional<qint64> numberOfCharactersForElement(
        const AccessibleElement* element);
    [[nodiscard]] std::optional<QString> stringForRange(
        TextRange range, const AccessibleElement* element);

    /// Whether the editor shows @p text where it was to go; strict.
    [[nodiscard]] bool verifyInsertionOfText(const QString& text, const AccessibleElement* element,
        const std::optional<QString>& expected, const EditorObservation& before);

    /// Writes @p text over the element's selection without keyboard or pasteboard. Empty on
    /// success, else the reason.
    [[nodiscard]] std::optional<QString> insertText(
        const QString& text, const AccessibleElement* element);

private:
    /// One delivery under way, from the snapshot to the outcome.
    struct Delivery;

    /// What the editor shows after the paste.
    enum class Sight {
        Verified, ///< The text, where it was to go.
        Changed, ///< Something else than before.
        Unchanged, ///< Everything can be seen, and nothing has changed.
        Unseen, ///< Too little to conclude from.
    };

    using Step = void (TextDelivery::*)();

    void takeSnapshotAndPaste();
    void afterPosting(KeyPosting posting);
    void checkAfterPaste();
    void concludeFrom(PasteReception reception);
    [[nodiscard]] Sight look();
    void type();
    void afterTyping(KeyPosting posting);
    void checkAfterTyping();
    void writeDirectly();
    void finishDirectWrite();
    /// @param means by which the text was brought, for the log.
    void finish(const char* means);
    void fail(const SimplifiedText& reason);
    void complete(const DeliveryOutcome& outcome);

    /// Presses what pastes into @p element of the target; null when it is not known.
    void postCommandV(const AccessibleElement* element);
    void postUnicodeText(const QString& text);
    [[nodiscard]] RunningApplication target() const;

    [[nodiscard]] ElementHandle editorForDelivery();
    [[nodiscard]] EditorObservation observe(const AccessibleElement* element);
    [[nodiscard]] bool replaceSelectionInValue(
        const QString& text, const AccessibleElement* element);
    void after(Seconds delay, Step step);
    /// Looks again a little later, unless the delivery has waited for @p patience. False then.
    bool waitOn(Seconds patience);

    Ports m_ports;
    TargetContext& m_target;
    std::unique_ptr<Delivery> m_delivery; // Null between deliveries.
    CallbackGuard m_guard;
};

} // namespace tavrin
