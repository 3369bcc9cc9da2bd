#include "app/session/SessionMessages.h"

#include "app/session/SessionTexts.h"
#include "app/settings/Localization.h"
#include "delivery/ApplicationContext.h"
#include "delivery/TextDelivery.h"

namespace tavrin {
QString chatContext(const ApplicationContext& application)
{
    return texts::chatContext.toString().arg(orElse(application.name, texts::unnamedApplication),
        orElse(application.bundleId, texts::noBundleIdentifier));
}

QString historyDelivery(const DeliveryOutcome& outcome)
{
    if (outcome.verified)
        return texts::insertedAutomatically.toString();
    return texts::keptOnPasteboard.toString().arg(
        outcome.reason.isNull() ? texts::insertionFailed.toString() : outcome.reason);
}

QString clipboardNotice(const DeliveryOutcome& outcome, const Localization& localization)
{
    if (outcome.reason.isEmpty())
        return localization.withKeyNames(texts::savedOnPasteboard.toString());
    return localization.withKeyNames(texts::pasteYourself.toString()).arg(outcome.reason);
}

} // namespace tavrin
