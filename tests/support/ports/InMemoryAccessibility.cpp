#include "support/ports/InMemoryAccessibility.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin::testing {

void FakeElement::insert(const QString& inserted)
{
    text.replace(selection.location, selection.length, inserted);
    selection = {selection.location + inserted.size(), 0};
}

class InMemoryAccessibility::Reference final : public AccessibleElement {
public:
    Reference(InMemoryAccessibility& owner, ElementPointer element)
        : m_owner(owner)
        , m_element(std::move(element))
    {
        ++m_owner.liveReferences;
    }

    ~Reference() override { --m_owner.liveReferences; }

    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    [[nodiscard]] const ElementPointer& element() const { return m_element; }

private:
    InMemoryAccessibility& m_owner;
    ElementPointer m_element;
};

ElementHandle InMemoryAccessibility::refer(const ElementPointer& element)
{
    return element ? std::make_unique<Reference>(*this, element) : nullptr;
}

FakeElement* InMemoryAccessibility::target(const AccessibleElement* element)
{
    return element ? static_cast<const Reference*>(element)->element().get() : nullptr;
}

bool InMemoryAccessibility::requestTrust()
{
    calls.append(u"requestTrust"_s);
    trusted = trusted || trustIsGranted;
    return trusted;
}

ElementHandle InMemoryAccessibility::focusedElement(qint64 processIdentifier)
{
    if (onFocusedElement)
        onFocusedElement();
    return refer(focusedElements.value(processIdentifier));
}

ElementHandle InMemoryAccessibility::systemFocusedElement()
{
    return refer(systemFocus);
}

ElementHandle InMemoryAccessibility::focusedWindow(qint64 processIdentifier)
{
    return refer(focusedWindows.value(processIdentifier));
}

ElementHandle InMemoryAccessibility::retain(const AccessibleElement& element)
{
    return refer(static_cast<const Reference&>(element).element());
}

std::optional<qint64> InMemoryAccessibility::processIdentifier(const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    if (!field || !field->exposesProcess)
        return std::nullopt;
    return field->processIdentifier;
}

std::optional<QString> InMemoryAccessibility::attribute(
    ElementAttribute name, const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    if (!field)
        return std::nullopt;
    return name == ElementAttribute::Role ? field->role : field->title;
}

bool InMemoryAccessibility::isProtected(const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    return field && field->isProtected;
}

bool InMemoryAccessibility::isTerminal(const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    return field && field->isTerminal;
}

std::optional<QString> InMemoryAccessibility::value(const AccessibleElement* element)
{
    ++reads;
    const FakeElement* const field = target(element);
    if (!field || !field->exposesText || field->isProtected)
        return std::nullopt;
    return field->claimedText ? field->claimedText : field->text;
}

std::optional<TextRange> InMemoryAccessibility::selectedTextRange(const AccessibleElement* element)
{
    ++reads;
    const FakeElement* const field = target(element);
    if (!field || !field->exposesSelection || field->isProtected)
        return std::nullopt;
    return field->claimedSelection ? field->claimedSelection : field->selection;
}

std::optional<qint64> InMemoryAccessibility::numberOfCharacters(const AccessibleElement* element)
{
    ++reads;
    const FakeElement* const field = target(element);
    if (!field || !field->exposesCount || field->isProtected)
        return std::nullopt;
    return field->claimedCount ? *field->claimedCount : field->text.size();
}

std::optional<QString> InMemoryAccessibility::stringForRange(
    TextRange range, const AccessibleElement* element)
{
    ++reads;
    const FakeElement* const field = target(element);
    if (!field || !field->exposesStringForRange || field->isProtected || range.location < 0
        || range.length < 0 || range.location > field->text.size()
        || range.length > field->text.size() - range.location)
        return std::nullopt;
    return field->text.mid(range.location, range.length);
}

bool InMemoryAccessibility::isSelectedTextSettable(const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    return field && field->selectedTextSettable;
}

bool InMemoryAccessibility::setSelectedText(const QString& text, const AccessibleElement* element)
{
    calls.append(u"setSelectedText"_s);
    FakeElement* const field = target(element);
    if (!field || !field->selectedTextSettable || !field->writesSucceed)
        return false;
    if (field->selectedTextWritesSucceed || field->deniedWritesAreDone)
        field->insert(text);
    return field->selectedTextWritesSucceed;
}

bool InMemoryAccessibility::isValueSettable(const AccessibleElement* element)
{
    const FakeElement* const field = target(element);
    return field && field->valueSettable;
}

bool InMemoryAccessibility::setValue(const QString& text, const AccessibleElement* element)
{
    calls.append(u"setValue"_s);
    FakeElement* const field = target(element);
    if (!field || !field->valueSettable || !field->writesSucceed)
        return false;
    field->text = text;
    field->selection = {0, 0};
    return true;
}

bool InMemoryAccessibility::setSelectedTextRange(TextRange range, const AccessibleElement* element)
{
    calls.append(u"setSelectedTextRange"_s);
    FakeElement* const field = target(element);
    if (!field || range.location < 0 || range.location > field->text.size())
        return false;
    field->selection = range;
    return true;
}

bool InMemoryAccessibility::setFocused(const AccessibleElement* element)
{
    calls.append(u"setFocused"_s);
    return target(element) != nullptr;
}

bool InMemoryAccessibility::setFocusedWindow(
    qint64 processIdentifier, const AccessibleElement* window)
{
    calls.append(u"setFocusedWindow %1"_s.arg(processIdentifier));
    return target(window) != nullptr;
}

} // namespace tavrin::testing
