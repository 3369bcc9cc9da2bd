#include "delivery/TargetContext.h"

#include "delivery/DeliveryTexts.h"
#include "platform/programs/Workspace.h"

namespace tavrin {

TargetContext::TargetContext(Workspace& workspace, Accessibility& accessibility)
    : m_workspace(workspace)
    , m_accessibility(accessibility)
{
}

void TargetContext::capture()
{
    m_targetApplication = m_workspace.frontmostApplication();
    releaseElements();
    if (m_accessibility.isProcessTrusted())
        m_targetFocusedElement = copyFocusedElementForTargetApplication().value_or(nullptr);
    if (m_accessibility.isProcessTrusted())
        m_targetFocusedWindow = copyFocusedWindowForTargetApplication();
}

void TargetContext::releaseElements()
{
    m_targetFocusedElement.reset();
    m_targetFocusedWindow.reset();
}

void TargetContext::clear()
{
    m_targetApplication.reset();
    releaseElements();
}

tl::expected<ElementHandle, QString> TargetContext::copyFocusedElementForTargetApplication()
{
    if (!m_targetApplication)
        return tl::unexpected(texts::noTargetApplication.toString());

    const qint64 target = m_targetApplication->processIdentifier;
    ElementHandle element = m_accessibility.focusedElement(target);
    if (!element)
        element = m_accessibility.systemFocusedElement();
    if (!element)
        return tl::unexpected(texts::noFocusedElement.toString());
    if (m_accessibility.processIdentifier(element.get()) != target)
        return tl::unexpected(texts::focusInOtherProcess.toString());
    return element;
}

ElementHandle TargetContext::copyFocusedWindowForTargetApplication()
{
    if (!m_targetApplication)
        return nullptr;
    return m_accessibility.focusedWindow(m_targetApplication->processIdentifier);
}

ApplicationContext TargetContext::applicationContext()
{
    ApplicationContext context;
    if (m_targetApplication) {
        context.name = m_targetApplication->localizedName;
        context.bundleId = m_targetApplication->bundleIdentifier.toLower();
    }
    if (context.name.isEmpty())
        context.name = texts::unknownApplication.toString();
    context.focusedRole = stringAttribute(ElementAttribute::Role, m_targetFocusedElement.get());
    context.windowHint =
        windowHintForTitle(stringAttribute(ElementAttribute::Title, m_targetFocusedWindow.get()));
    return context;
}

QString TargetContext::stringAttribute(ElementAttribute name, const AccessibleElement* element)
{
    return m_accessibility.attribute(name, element).value_or(QString());
}

} // namespace tavrin
