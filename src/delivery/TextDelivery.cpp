#include "delivery/TextDelivery.h"

#include "base/Log.h"
#include "delivery/DeliveryTexts.h"
#include "delivery/TargetContext.h"
#include "delivery/UnicodeChunks.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/SyntheticKeyboard.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds activationDelay = 260ms; // Until the target has come to the front.
constexpr Seconds pasteDelay = 520ms; // Until a paste has landed.
constexpr Seconds typingDelayPerUnit = 2ms;
constexpr Seconds typingDelayBase = 260ms;
constexpr Seconds longestTypingDelay = 1200ms;
constexpr Seconds directWriteDelay = 180ms;

Seconds typingDelay(const QString& text)
{
    const Seconds delay = typingDelayPerUnit * static_cast<double>(text.size()) + typingDelayBase;
    return std::min(delay, longestTypingDelay);
}

} // namespace

struct TextDelivery::Delivery {
    QString text;
    Completion<DeliveryOutcome> completion;
    ElementHandle element; // The editor; null when none could be found.
    EditorObservation before;
    std::optional<QString> expected; // The editor's whole text after a perfect insertion.
};

TextDelivery::TextDelivery(const Ports& ports, TargetContext& target)
    : m_ports(ports)
    , m_target(target)
{
}

void TextDelivery::pasteText(const QString& text, Completion<DeliveryOutcome> completion)
{
    const auto fail = [&](const SimplifiedText& reason) {
        completion(DeliveryOutcome{false, reason.toString()});
    };
    if (!m_ports.pasteboard.setString(text))
        return fail(texts::pasteboardRefused);
    const std::optional<RunningApplication>& target = m_target.targetApplication();
    if (!target)
        return fail(texts::noTargetApplication);
    if (target->bundleIdentifier == m_ports.workspace.bundleIdentifier())
        return fail(texts::targetIsTavrin);
    const bool trusted = m_ports.accessibility.isProcessTrusted();
    if (!m_ports.workspace.activate(*target))
        return fail(texts::targetNotActivated);

    const auto delivery =
        std::make_shared<Delivery>(Delivery{text, std::move(completion), nullptr, {}, {}});
    m_ports.mainQueue.callLater(activationDelay,
        m_guard.bind([this, delivery, trusted] { takeSnapshotAndPaste(delivery, trusted); }));
}

void TextDelivery::takeSnapshotAndPaste(const DeliveryPointer& delivery, bool trusted)
{
    if (const AccessibleElement* const window = m_target.targetFocusedWindow())
        m_ports.accessibility.setFocusedWindow(target().processIdentifier, window);
    if (trusted)
        delivery->element = editorForDelivery();
    if (delivery->element) {
        delivery->before = observe(delivery->element.get());
        if (delivery->before.range) {
            delivery->expected =
                expectedValueFrom(delivery->before.text, *delivery->before.range, delivery->text);
        }
    }
    postCommandV();
    after(pasteDelay, delivery, &TextDelivery::checkAfterPaste);
}

void TextDelivery::checkAfterPaste(const DeliveryPointer& delivery)
{
    const AccessibleElement* const element = delivery->element.get();
    if (verifyInsertionOfText(delivery->text, element, delivery->expected, delivery->before))
        return finish(delivery, "paste, verified");
    const EditorObservation now = observe(element);
    if (hasVisibleChange(delivery->before, now))
        return finish(delivery, "paste, changed the editor");
    if (!isObservationComplete(delivery->before, now))
        return finish(delivery, "paste, unseen");

    // Everything could be seen and nothing has changed: the paste was swallowed.
    postUnicodeText(delivery->text);
    after(typingDelay(delivery->text), delivery, &TextDelivery::checkAfterTyping);
}

void TextDelivery::checkAfterTyping(const DeliveryPointer& delivery)
{
    const AccessibleElement* const element = delivery->element.get();
    if (verifyInsertionOfText(delivery->text, element, delivery->expected, delivery->before)
        || hasVisibleChange(delivery->before, observe(element)))
        return finish(delivery, "typing");

    static_cast<void>(
        insertText(delivery->text, element)); // The last means; its word changes nothing.
    m_ports.mainQueue.callLater(
        directWriteDelay, m_guard.bind([delivery] { finish(delivery, "direct write"); }));
}

void TextDelivery::finish(const DeliveryPointer& delivery, const char* means)
{
    qCInfo(log::delivery) << "delivered by" << means;
    delivery->element.reset(); // Released before the caller hears of the outcome.
    delivery->completion(DeliveryOutcome{true, {}});
}

std::optional<QString> TextDelivery::textValueForElement(const AccessibleElement* element)
{
    return m_ports.accessibility.value(element);
}

std::optional<TextRange> TextDelivery::selectedRangeForElement(const AccessibleElement* element)
{
    return m_ports.accessibility.selectedTextRange(element);
}

std::optional<qint64> TextDelivery::numberOfCharactersForElement(const AccessibleElement* element)
{
    return m_ports.accessibility.numberOfCharacters(element);
}

std::optional<QString> TextDelivery::stringForRange(
    TextRange range, const AccessibleElement* element)
{
    if (!element || range.location < 0 || range.length < 0)
        return std::nullopt;
    return m_ports.accessibility.stringForRange(range, element);
}

bool TextDelivery::verifyInsertionOfText(const QString& text, const AccessibleElement* element,
    const std::optional<QString>& expected, const EditorObservation& before)
{
    const std::optional<RunningApplication>& target = m_target.targetApplication();
    if (!element || !target || !m_ports.workspace.isActive(*target))
        return false;
    if (expected
        && normalizedEditorText(textValueForElement(element)) == normalizedEditorText(expected))
        return true;
    if (!before.range)
        return false;

    const std::optional<QString> inserted =
        stringForRange({before.range->location, text.size()}, element);
    if (inserted && normalizedEditorText(inserted) == normalizedEditorText(text))
        return true;

    EditorObservation now;
    now.range = selectedRangeForElement(element);
    now.count = numberOfCharactersForElement(element);
    return caretAndCountMatch(before, now, text.size());
}

std::optional<QString> TextDelivery::insertText(
    const QString& text, const AccessibleElement* element)
{
    Accessibility& accessibility = m_ports.accessibility;
    if (!element)
        return texts::noTargetField.toString();
    if (accessibility.isSelectedTextSettable(element)
        && accessibility.setSelectedText(text, element))
        return std::nullopt;
    if (replaceSelectionInValue(text, element))
        return std::nullopt;
    return texts::directWriteNotAllowed.toString();
}

bool TextDelivery::replaceSelectionInValue(const QString& text, const AccessibleElement* element)
{
    Accessibility& accessibility = m_ports.accessibility;
    const bool settable = accessibility.isValueSettable(element);
    const std::optional<QString> value = textValueForElement(element);
    const std::optional<TextRange> range = selectedRangeForElement(element);
    if (!settable || !range)
        return false;
    const std::optional<QString> replaced = expectedValueFrom(value, *range, text);
    if (!replaced || !accessibility.setValue(*replaced, element))
        return false;
    accessibility.setSelectedTextRange({range->location + text.size(), 0}, element);
    return true;
}

void TextDelivery::postCommandV()
{
    m_ports.keyboard.postPasteShortcut(target());
}

void TextDelivery::postUnicodeText(const QString& text)
{
    m_ports.keyboard.postUnicodeText(unicodeChunks(text), target());
}

RunningApplication TextDelivery::target() const
{
    return m_target.targetApplication().value_or(RunningApplication());
}

ElementHandle TextDelivery::editorForDelivery()
{
    Accessibility& accessibility = m_ports.accessibility;
    const std::optional<RunningApplication>& target = m_target.targetApplication();
    ElementHandle editor;
    if (const AccessibleElement* const captured = m_target.targetFocusedElement()) {
        const std::optional<qint64> process = accessibility.processIdentifier(captured);
        accessibility.setFocused(captured);
        const bool hasRole = accessibility.attribute(ElementAttribute::Role, captured).has_value();
        if (hasRole && target && process == target->processIdentifier)
            editor = accessibility.retain(*captured);
    }
    if (!editor)
        editor = m_target.copyFocusedElementForTargetApplication().value_or(nullptr);
    if (editor && accessibility.isProtected(editor.get()))
        return nullptr; // A password field: nothing of it is read, before or after.
    return editor;
}

EditorObservation TextDelivery::observe(const AccessibleElement* element)
{
    if (!element)
        return {};
    return {textValueForElement(element), selectedRangeForElement(element),
        numberOfCharactersForElement(element)};
}

void TextDelivery::after(
    Seconds delay, DeliveryPointer delivery, void (TextDelivery::*step)(const DeliveryPointer&))
{
    m_ports.mainQueue.callLater(delay,
        m_guard.bind([this, delivery = std::move(delivery), step] { (this->*step)(delivery); }));
}

} // namespace tavrin
