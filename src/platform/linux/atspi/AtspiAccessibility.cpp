#include "platform/linux/atspi/AtspiAccessibility.h"

#include "platform/linux/atspi/AtspiConnection.h"
#include "platform/linux/atspi/AtspiRoles.h"
#include "platform/linux/atspi/Libatspi.h"

namespace tavrin {

using namespace libatspi;

namespace {

/// A question to an editor whose answer may itself be unknown.
template <class Answer>
using TextQuestion = std::function<std::optional<Answer>(AtspiTextReader&, AtspiAccessible*)>;

bool isSingleLine(AtspiAccessible* element, AtspiRole role)
{
    return hasState(element, ATSPI_STATE_SINGLE_LINE)
        || ((role == ATSPI_ROLE_ENTRY || role == ATSPI_ROLE_TEXT)
            && !hasState(element, ATSPI_STATE_MULTI_LINE));
}

std::optional<QString> readAttribute(ElementAttribute name, AtspiAccessible* element)
{
    if (name == ElementAttribute::Title) {
        const GMemory<char> title(atspi_accessible_get_name(element, nullptr));
        return title ? std::optional(QString::fromUtf8(title.get())) : std::nullopt;
    }
    const AtspiRole role = atspi_accessible_get_role(element, nullptr);
    if (role == ATSPI_ROLE_INVALID)
        return std::nullopt;
    return axRoleName(role, isSingleLine(element, role));
}

/// Whether the element is a password field, or does not say what it is.
bool mayBePassword(AtspiAccessible* element)
{
    const AtspiRole role = atspi_accessible_get_role(element, nullptr);
    return role == ATSPI_ROLE_PASSWORD_TEXT || role == ATSPI_ROLE_INVALID;
}

bool grabFocus(AtspiAccessible* element)
{
    const GObjectHandle<AtspiComponent> component(atspi_accessible_get_component_iface(element));
    return component && atspi_component_grab_focus(component.get(), nullptr);
}

/// Asks about the text of an element that is no password field.
template <class Answer>
std::optional<Answer> readText(
    AtspiConnection& connection, const AccessibleElement* element, TextQuestion<Answer> question)
{
    return connection
        .ask<std::optional<Answer>>(element,
            [question = std::move(question)](
                AtspiTextReader& reader, AtspiAccessible* accessible) -> std::optional<Answer> {
                if (mayBePassword(accessible))
                    return std::nullopt;
                return question(reader, accessible);
            })
        .value_or(std::nullopt);
}

} // namespace

AtspiAccessibility::AtspiAccessibility(Seconds startPause)
    : m_connection(std::make_unique<AtspiConnection>(startPause))
{
}

AtspiAccessibility::~AtspiAccessibility() = default;

bool AtspiAccessibility::isProcessTrusted() const
{
    return m_connection->isEnabled();
}

bool AtspiAccessibility::requestTrust()
{
    m_connection->enable();
    return isProcessTrusted();
}

std::optional<QSet<qint64>> AtspiAccessibility::exposedProcesses()
{
    return m_connection->processesOnBus();
}

ElementHandle AtspiAccessibility::focusedElement(qint64 processIdentifier)
{
    return m_connection->find(
        static_cast<unsigned>(processIdentifier), &AtspiFocus::focusedElement);
}

ElementHandle AtspiAccessibility::systemFocusedElement()
{
    return m_connection->find(std::nullopt, &AtspiFocus::focusedElement);
}

ElementHandle AtspiAccessibility::focusedWindow(qint64 processIdentifier)
{
    return m_connection->find(static_cast<unsigned>(processIdentifier),
        [](AtspiFocus&, unsigned process) { return AtspiFocus::activeWindow(process); });
}

ElementHandle AtspiAccessibility::retain(const AccessibleElement& element)
{
    return m_connection->retain(static_cast<const AtspiElement&>(element));
}

std::optional<qint64> AtspiAccessibility::processIdentifier(const AccessibleElement* element)
{
    if (!element)
        return std::nullopt;
    const unsigned process = static_cast<const AtspiElement*>(element)->process();
    return process == 0 ? std::nullopt : std::optional<qint64>(process);
}

std::optional<QString> AtspiAccessibility::attribute(
    ElementAttribute name, const AccessibleElement* element)
{
    using Answer = std::optional<QString>;
    return m_connection
        ->ask<Answer>(element,
            [name](AtspiTextReader&, AtspiAccessible* accessible) {
                return readAttribute(name, accessible);
            })
        .value_or(std::nullopt);
}

bool AtspiAccessibility::isProtected(const AccessibleElement* element)
{
    if (!element)
        return false;
    return m_connection
        ->ask<bool>(element,
            [](AtspiTextReader&, AtspiAccessible* accessible) { return mayBePassword(accessible); })
        .value_or(true); // A program that does not answer is not to be read either.
}

bool AtspiAccessibility::isTerminal(const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [](AtspiTextReader&, AtspiAccessible* accessible) {
                return atspi_accessible_get_role(accessible, nullptr) == ATSPI_ROLE_TERMINAL;
            })
        .value_or(false);
}

std::optional<QString> AtspiAccessibility::value(const AccessibleElement* element)
{
    return readText<QString>(
        *m_connection, element, [](AtspiTextReader& reader, AtspiAccessible* accessible) {
            return reader.value(accessible);
        });
}

std::optional<TextRange> AtspiAccessibility::selectedTextRange(const AccessibleElement* element)
{
    return readText<TextRange>(
        *m_connection, element, [](AtspiTextReader& reader, AtspiAccessible* accessible) {
            return reader.selectedRange(accessible);
        });
}

std::optional<qint64> AtspiAccessibility::numberOfCharacters(const AccessibleElement* element)
{
    return readText<qint64>(
        *m_connection, element, [](AtspiTextReader& reader, AtspiAccessible* accessible) {
            return reader.numberOfCharacters(accessible);
        });
}

std::optional<QString> AtspiAccessibility::stringForRange(
    TextRange range, const AccessibleElement* element)
{
    return readText<QString>(
        *m_connection, element, [range](AtspiTextReader& reader, AtspiAccessible* accessible) {
            return reader.stringForRange(accessible, range);
        });
}

bool AtspiAccessibility::isSelectedTextSettable(const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [](AtspiTextReader&, AtspiAccessible* accessible) {
                return AtspiTextReader::isEditable(accessible);
            })
        .value_or(false);
}

bool AtspiAccessibility::setSelectedText(const QString& text, const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [text](AtspiTextReader& reader, AtspiAccessible* accessible) {
                return reader.replaceSelection(accessible, text);
            })
        .value_or(false);
}

bool AtspiAccessibility::isValueSettable(const AccessibleElement* element)
{
    return isSelectedTextSettable(element);
}

bool AtspiAccessibility::setValue(const QString& text, const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [text](AtspiTextReader& reader, AtspiAccessible* accessible) {
                reader.clear();
                return AtspiTextReader::setValue(accessible, text);
            })
        .value_or(false);
}

bool AtspiAccessibility::setSelectedTextRange(TextRange range, const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [range](AtspiTextReader& reader, AtspiAccessible* accessible) {
                return reader.setSelectedRange(accessible, range);
            })
        .value_or(false);
}

bool AtspiAccessibility::setFocused(const AccessibleElement* element)
{
    return m_connection
        ->ask<bool>(element,
            [](AtspiTextReader&, AtspiAccessible* accessible) { return grabFocus(accessible); })
        .value_or(false);
}

bool AtspiAccessibility::setFocusedWindow(
    qint64 /*processIdentifier*/, const AccessibleElement* /*window*/)
{
    return false;
}

} // namespace tavrin
