#include "app/pages/InputOutputController.h"

#include "app/menu/StatusMenu.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutSettings.h"

namespace tavrin {
namespace {

QStringList titles(const QList<SettingChoice>& choices)
{
    QStringList titles;
    for (const SettingChoice& choice : choices)
        titles.append(choice.title);
    return titles;
}

} // namespace

InputOutputController::InputOutputController(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
}

void InputOutputController::setView(View<InputOutputContent>* view)
{
    m_view = view;
    m_neighbours.shortcutSettings.setView(view ? this : nullptr);
    m_neighbours.statusMenu.setOutputView(view ? this : nullptr);
}

InputOutputContent InputOutputController::content()
{
    return {.shortcuts = m_neighbours.shortcutSettings.content(),
        .output = m_neighbours.statusMenu.outputContent()};
}

QStringList InputOutputController::shortcutTitles() const
{
    return titles(m_neighbours.settings.ShortcutItems());
}

QStringList InputOutputController::outputStyleTitles() const
{
    return titles(m_neighbours.settings.OutputStyleItems());
}

QStringList InputOutputController::translationTargetTitles() const
{
    return titles(m_neighbours.settings.translationTargetItems());
}

void InputOutputController::selectShortcut(ShortcutSlot slot, qsizetype row)
{
    m_neighbours.shortcutSettings.selectShortcut(slot, row);
}

/// The menu takes this one without telling its view, which has chosen it.
void InputOutputController::selectStylePopup(qsizetype row)
{
    m_neighbours.statusMenu.selectStylePopup(row);
    show();
}

void InputOutputController::selectTranslationPopup(qsizetype row)
{
    m_neighbours.statusMenu.selectTranslationPopup(row);
}

/// Either one is shown with the other as it is now: a content kept from the last time may be old.
void InputOutputController::setContent(const ShortcutContent& /*content*/)
{
    show();
}

void InputOutputController::setContent(const OutputContent& /*content*/)
{
    show();
}

void InputOutputController::show()
{
    if (m_view)
        m_view->setContent(content());
}

} // namespace tavrin
