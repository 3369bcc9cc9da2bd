#include "app/pages/GeneralController.h"

#include "app/pages/GeneralTexts.h"
#include "app/settings/InterfaceLanguages.h"
#include "app/settings/Localization.h"
#include "app/vocabulary/SettingsTexts.h"
#include "app/vocabulary/SpeechLanguages.h"
#include "app/vocabulary/TableIndex.h"
#include "app/vocabulary/TranslationTargets.h"
#include "audio/AudioEnvironment.h"
#include "platform/Alerts.h"
#include "platform/speech/RecogniserSettings.h"

#include <algorithm>

namespace tavrin {
namespace {

qsizetype interfaceLanguageRow(const QString& code)
{
    const auto found = std::ranges::find(interfaceLanguages, code, &InterfaceLanguageItem::code);
    return found == interfaceLanguages.end() ? 0 : std::distance(interfaceLanguages.begin(), found);
}

qsizetype rowOf(const QList<PopupContent::Item>& items, const QString& identifier)
{
    return indexOfIdentifier(items, identifier);
}

} // namespace

GeneralController::GeneralController(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
}

GeneralContent GeneralController::content() const
{
    return {
        .interfaceLanguage = interfaceLanguageRow(m_neighbours.localization.InterfaceLanguage()),
        .microphones = m_microphones,
        .mutesDuringRecording = MuteDuringRecordingEnabled(m_neighbours.preferences),
        .recogniser = recogniserContent(),
    };
}

QStringList GeneralController::interfaceLanguageTitles()
{
    QStringList titles;
    for (const InterfaceLanguageItem& language : interfaceLanguages)
        titles.append(language.nativeName.toString());
    return titles;
}

QString GeneralController::translationLanguagesCount() const
{
    return m_neighbours.localization.LT(
        texts::translationLanguagesCount, QString::number(translationTargets.size()));
}

void GeneralController::refreshMicrophoneControls()
{
    if (!m_view)
        return;
    m_microphones = m_neighbours.audioEnvironment.refreshMicrophoneControls(
        m_neighbours.localization.localize());
    show();
}

void GeneralController::selectInterfaceLanguage(qsizetype row)
{
    tavrin::selectInterfaceLanguage(
        row, m_neighbours.preferences, m_neighbours.localization, m_neighbours.alerts);
    show();
}

void GeneralController::selectPreferredMicrophone(qsizetype row)
{
    if (m_microphones.items.isEmpty())
        return;
    m_microphones.selected = std::clamp<qsizetype>(row, 0, m_microphones.items.size() - 1);
    m_neighbours.audioEnvironment.selectPreferredMicrophone(
        m_microphones.items[m_microphones.selected].uid);
    show();
}

void GeneralController::toggleMuteDuringRecording(bool on)
{
    m_neighbours.audioEnvironment.toggleMuteDuringRecording(on);
    show();
}

void GeneralController::selectRecogniser(qsizetype row)
{
    const RecogniserChoices choices = m_neighbours.recogniserSettings.choices();
    if (choices.recognisers.isEmpty())
        return;
    const QString identifier = itemAtClampedIndex(choices.recognisers, row).identifier;
    if (identifier != choices.recogniser) {
        m_neighbours.recogniserSettings.selectRecogniser(identifier);
        askToReopen();
    }
    show();
}

void GeneralController::selectRecogniserLanguage(qsizetype row)
{
    const RecogniserChoices choices = m_neighbours.recogniserSettings.choices();
    const QString tag = itemAtClampedIndex(languageItems(choices).items, row).identifier;
    if (!tag.isEmpty() && tag != choices.language) {
        m_neighbours.recogniserSettings.selectLanguage(tag);
        askToReopen();
    }
    show();
}

void GeneralController::show()
{
    if (m_view)
        m_view->setContent(content());
}

std::optional<RecogniserContent> GeneralController::recogniserContent() const
{
    const RecogniserChoices choices = m_neighbours.recogniserSettings.choices();
    if (choices.recognisers.isEmpty())
        return std::nullopt;
    RecogniserContent content;
    for (const RecogniserChoice& choice : choices.recognisers)
        content.recognisers.items.append(
            {m_neighbours.localization.LT(choice.name), choice.identifier});
    content.recognisers.selected = rowOf(content.recognisers.items, choices.recogniser);
    content.languages = languageItems(choices);
    content.hasLanguages = !choices.languages.isEmpty();
    return content;
}

/// While nothing is chosen, the first item says so.
PopupContent GeneralController::languageItems(const RecogniserChoices& choices) const
{
    const Localization& localization = m_neighbours.localization;
    PopupContent content;
    if (choices.language.isEmpty())
        content.items.append({localization.LT(texts::notSet), {}});
    for (const QString& tag : choices.languages) {
        const SpeechLanguageRow* const known = speechLanguage(tag);
        const bool sharesName =
            known && std::ranges::count(choices.languages, known, speechLanguage) > 1;
        QString title = known ? localization.LT(known->name) : tag;
        if (sharesName)
            title += QStringLiteral(" (%1)").arg(tag);
        content.items.append({title, tag});
    }
    content.selected = rowOf(content.items, choices.language);
    return content;
}

void GeneralController::askToReopen()
{
    const Localization& localization = m_neighbours.localization;
    Alert alert;
    alert.messageText = localization.LT(texts::recogniserUpdated);
    alert.informativeText = localization.LT(texts::reopenToApplyRecogniser);
    alert.buttons = {localization.LT(texts::ok)};
    m_neighbours.alerts.show(alert, [](const AlertAnswer&) {});
}

} // namespace tavrin
