#include "app/menu/OperationItems.h"

#include "app/menu/StatusMenuTexts.h"
#include "app/settings/Localization.h"
#include "app/settings/OperationShortcut.h"
#include "app/settings/Settings.h"

namespace tavrin {
namespace {

using Items = std::array<OperationItem, 3>;

Items idleItems(Settings& settings, const Localization& localization)
{
    const auto shortcut = [&](OperationMode mode) { return firstShortcutName(settings, mode); };
    const QString target = settings.TranslationDisplayNameForTarget(settings.TranslationTarget());
    return {
        OperationItem{
            localization.LT(texts::startDictation, shortcut(OperationMode::Dictation)), true},
        OperationItem{
            localization.LT(texts::startTranslation, shortcut(OperationMode::Translation), target),
            true},
        OperationItem{localization.LT(texts::startChat, shortcut(OperationMode::Chat)), true},
    };
}

Items recordingItems(OperationMode mode, Settings& settings, const Localization& localization)
{
    const OperationItem finish{
        localization.LT(texts::finishOperation.at(static_cast<std::size_t>(mode)),
            firstShortcutName(settings, mode)),
        true};
    const auto unavailable = [&](const LocalizedText& text) {
        return OperationItem{localization.LT(text), false};
    };
    switch (mode) {
    case OperationMode::Dictation:
        return {finish, unavailable(texts::translationUnavailableDuringDictation),
            unavailable(texts::chatUnavailableDuringDictation)};
    case OperationMode::Translation:
        return {unavailable(texts::dictationUnavailableDuringTranslation), finish,
            unavailable(texts::chatUnavailableDuringTranslation)};
    case OperationMode::Chat:
        return {unavailable(texts::dictationUnavailableDuringChat),
            unavailable(texts::translationUnavailableDuringChat), finish};
    }
    Q_UNREACHABLE();
}

Items processingItems(OperationMode mode, const Localization& localization)
{
    const OperationItem item{
        localization.LT(texts::processing.at(static_cast<std::size_t>(mode))), false};
    return {item, item, item};
}

} // namespace

Items operationItems(
    SessionState state, OperationMode mode, Settings& settings, const Localization& localization)
{
    switch (state) {
    case SessionState::Idle:
        return idleItems(settings, localization);
    case SessionState::Recording:
        return recordingItems(mode, settings, localization);
    case SessionState::Processing:
        return processingItems(mode, localization);
    }
    Q_UNREACHABLE();
}

} // namespace tavrin
