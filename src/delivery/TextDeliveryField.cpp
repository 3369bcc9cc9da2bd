// What a delivery reads of the target's editor, and how it writes into it.

#include "delivery/DeliveryTexts.h"
#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "platform/programs/Workspace.h"

namespace tavrin {

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

    // Where the pasteboard may be another one than the target's, another text may be as long.
    if (!m_ports.workspace.reachesEveryProgram())
        return false;
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
    const EditorObservation before = observe(element);
    if (accessibility.isSelectedTextSettable(element)
        && accessibility.setSelectedText(text, element))
        return std::nullopt;
    if (hasVisibleChange(before, observe(element)))
        return std::nullopt; // It says that it did not, and did: written again it would stand
                             // twice.
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

} // namespace tavrin
