#pragma once

#include <QString>

namespace tavrin {

class Localization;
struct ApplicationContext;
struct DeliveryOutcome;

/// What the cloud service is told about the application that a question was asked from.
[[nodiscard]] QString chatContext(const ApplicationContext& application);

/// How the delivery went, as the history keeps it.
[[nodiscard]] QString historyDelivery(const DeliveryOutcome& outcome);

/// What the panel says when the text waits on the pasteboard: the reason, if there is one, and the
/// keys to press.
[[nodiscard]] QString clipboardNotice(
    const DeliveryOutcome& outcome, const Localization& localization);

} // namespace tavrin
