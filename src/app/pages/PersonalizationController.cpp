#include "app/pages/PersonalizationController.h"

#include "app/pages/WritingTones.h"
#include "app/vocabulary/TableIndex.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

PersonalizationController::PersonalizationController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

void PersonalizationController::showPersonalizationWindow()
{
    if (!m_view)
        return;
    const Preferences& preferences = m_neighbours.preferences;
    m_content = {.sample = valueOf(preferences, keys::writingStyleSample),
        .tone = indexOfIdentifier(writingTones, valueOf(preferences, keys::writingTone))};
    m_view->setContent(m_content);
    m_view->bringToFront();
}

void PersonalizationController::selectTone(qsizetype index)
{
    m_content.tone = std::clamp<qsizetype>(index, 0, std::ssize(writingTones) - 1);
}

void PersonalizationController::savePersonalization()
{
    Preferences& preferences = m_neighbours.preferences;
    preferences.setValue(keys::writingStyleSample, m_content.sample);
    preferences.setValue(
        keys::writingTone, itemAtClampedIndex(writingTones, m_content.tone).identifier.toString());
    preferences.synchronize();
    m_neighbours.playSound(u"success"_s);
}

} // namespace tavrin
