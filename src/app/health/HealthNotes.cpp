#include "app/health/HealthNotes.h"

#include "app/health/HealthTexts.h"
#include "app/health/HealthVerdicts.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutConflicts.h"
#include "app/vocabulary/SpeechLanguages.h"
#include "app/windows/SingleLine.h"
#include "audio/RecordingMicrophone.h"
#include "platform/DesktopTexts.h"
#include "platform/SystemInfo.h"
#include "platform/audio/AudioDevices.h"
#include "platform/keyboard/HotKeyProbe.h"
#include "platform/programs/Workspace.h"
#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr LocalizedText nothing{u""};
constexpr qsizetype longestName = 60;

QString languageName(const Localization& localization, const QString& tag)
{
    const SpeechLanguageRow* const known = speechLanguage(tag);
    return known ? localization.LT(known->name) : tag;
}

/// What recognises speech, and which language it hears.
QString recogniserText(const HealthSources& sources, const SpeechAvailability& availability)
{
    const Localization& localization = sources.localization;
    QString text = localization.LT(availability.text);
    if (text.isEmpty())
        return localization.LT(texts::recogniserUnavailable);
    const QString tag = sources.systemInfo.speechLanguage();
    const QString language = languageName(localization, tag);
    const bool namesLanguage = availability.argument == tag;
    if (text.contains("%1"_L1))
        text = text.arg(namesLanguage ? language : singleLine(availability.argument));
    if (namesLanguage || tag.isEmpty() || !availability.isAvailable)
        return text;
    return localization.LT(texts::recogniserHears, text, language);
}

HealthNote recogniserNote(const HealthSources& sources, const QString& title)
{
    const SpeechAvailability availability = sources.recognizer.availability();
    const Localization& localization = sources.localization;
    QString text = recogniserText(sources, availability);
    if (availability.isAvailable && !availability.lastFailure.isEmpty())
        text = localization.LT(texts::recogniserFailed, text, singleLine(availability.lastFailure));
    const bool isWell = availability.isAvailable && availability.lastFailure.isEmpty();
    return {title, localization.LT(isWell ? texts::healthy : texts::problem, text),
        isWell ? HealthColor::Healthy : HealthColor::Problem, HealthNoteAction::None, {}};
}

std::optional<HealthNote> silenceNote(const HealthSources& sources)
{
    const std::optional<AudioDeviceId> device =
        recordingMicrophone(sources.audioDevices, sources.preferences);
    if (!device || !sources.audioDevices.isInputSilent(*device).value_or(false))
        return std::nullopt;
    const Localization& localization = sources.localization;
    const QString name =
        singleLine(sources.audioDevices.name(*device).value_or(QString()), longestName);
    return HealthNote{localization.LT(texts::microphone),
        localization.LT(texts::silentMicrophone, name), HealthColor::Problem,
        HealthNoteAction::OpenSoundSettings, localization.LT(texts::soundSettings)};
}

std::optional<HealthNote> shortcutNote(const HealthSources& sources)
{
    const Localization& localization = sources.localization;
    QStringList sentences;
    for (const SpaceShortcut& shortcut : takenShortcuts(sources.settings, sources.hotKeyProbe)) {
        const QString name =
            sources.settings.ShortcutDisplayNameForIdentifier(shortcut.identifier.toString());
        const QString holder = singleLine(
            sources.hotKeyProbe.holder(key_codes::space, shortcut.modifiers), longestName);
        sentences.append(holder.isEmpty() ? localization.LT(texts::shortcutHeld, name)
                                          : localization.LT(texts::shortcutHeldBy, name, holder));
    }
    if (sentences.isEmpty())
        return std::nullopt;
    return HealthNote{localization.LT(texts::shortcutsTitle), sentences.join(u' '),
        HealthColor::Problem, HealthNoteAction::ChangeShortcuts,
        localization.LT(texts::changeShortcuts)};
}

std::optional<HealthNote> sessionNote(const HealthSources& sources)
{
    const Localization& localization = sources.localization;
    const QString limit = localization.desktopText(&DesktopTexts::limitedReach, nothing);
    if (sources.workspace.reachesEveryProgram() || limit.isEmpty())
        return std::nullopt;
    return HealthNote{localization.LT(texts::desktopSession),
        localization.LT(texts::problem, limit), HealthColor::Problem, HealthNoteAction::None, {}};
}

} // namespace

QList<HealthNote> readHealthNotes(const HealthSources& sources)
{
    const QString recogniser = sources.localization.desktopText(&DesktopTexts::recogniser, nothing);
    if (recogniser.isEmpty())
        return {};
    QList<HealthNote> notes{recogniserNote(sources, recogniser)};
    for (const std::optional<HealthNote>& note :
        {silenceNote(sources), shortcutNote(sources), sessionNote(sources)}) {
        if (note)
            notes.append(*note);
    }
    return notes;
}

HealthNote restartNote(const Localization& localization, const QStringList& names)
{
    QStringList shown;
    std::ranges::transform(names, std::back_inserter(shown),
        [](const QString& name) { return singleLine(name, longestName); });
    return {localization.LT(texts::accessibility),
        localization.LT(texts::restartPrograms, shown.join(localization.LT(texts::listSeparator))),
        HealthColor::Problem, HealthNoteAction::None, {}};
}

} // namespace tavrin
