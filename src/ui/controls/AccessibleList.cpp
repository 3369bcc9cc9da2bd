#include "ui/controls/AccessibleList.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace tavrin::ui {
namespace {

constexpr auto isListProperty = "accessibleList";

QAccessibleInterface* accessibleList(const QString& /*className*/, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    if (!widget || !widget->property(isListProperty).toBool())
        return nullptr;
    return new QAccessibleWidget(widget, QAccessible::List);
}

} // namespace

void setAccessibleList(QWidget& widget)
{
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(&accessibleList);
        return true;
    }();
    widget.setProperty(isListProperty, true);
}

} // namespace tavrin::ui
