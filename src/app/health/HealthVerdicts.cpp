#include "app/health/HealthVerdicts.h"

#include "app/health/HealthNotes.h"
#include "app/health/HealthTexts.h"
#include "app/settings/Localization.h"
#include "app/windows/SingleLine.h"
#include "platform/Clock.h"
#include "platform/DesktopTexts.h"
#include "platform/Permissions.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"
#include "platform/programs/Accessibility.h"
#include "platform/speech/SpeechRecognizer.h"

#include <QDateTime>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin {

/// How a row stands: its status, in its color.
struct HealthVerdicts::State {
    QString status;
    HealthColor color = HealthColor::Unknown;
};

HealthVerdicts::HealthVerdicts(const HealthSources& sources)
    : m_sources(sources)
{
}

HealthContent HealthVerdicts::unread() const
{
    HealthContent content;
    for (const HealthItem item : healthItems)
        content.row(item) = row(item);
    return content;
}

HealthContent HealthVerdicts::read() const
{
    HealthContent content;
    for (const HealthItem item : healthItems)
        content.row(item) = readRow(item);
    content.notes = readHealthNotes(m_sources);
    content.updated = texts::checkedAt.toString().arg(timeOfDay());
    return content;
}

HealthRow HealthVerdicts::readRow(HealthItem item) const
{
    HealthRow result = row(item);
    const State state = stateOf(item);
    result.status = state.status;
    result.color = state.color;
    result.hasButton = state.color == HealthColor::Problem;
    return result;
}

HealthRow HealthVerdicts::row(HealthItem item) const
{
    const Localization& localization = m_sources.localization;
    const auto named = [&](const LocalizedText& title, const QString& button) {
        return HealthRow{localization.LT(title), texts::checking.toString(), HealthColor::Unknown,
            button, false};
    };
    const QString enable =
        localization.desktopText(&DesktopTexts::enablePermission, texts::enablePermission);
    switch (item) {
    case HealthItem::Accessibility:
        return named(texts::accessibility, enable);
    case HealthItem::Microphone:
        return named(texts::microphone, enable);
    case HealthItem::Speech:
        return named(texts::speechRow, enable);
    case HealthItem::Api:
        return named(texts::tavrinCloud, localization.LT(texts::signInToCloud));
    case HealthItem::Delivery:
        return named(texts::cursorDelivery, localization.LT(texts::showRecords));
    }
    Q_UNREACHABLE();
}

HealthVerdicts::State HealthVerdicts::stateOf(HealthItem item) const
{
    switch (item) {
    case HealthItem::Accessibility:
        return accessibilityState();
    case HealthItem::Microphone:
        return microphoneState();
    case HealthItem::Speech:
        return speechState();
    case HealthItem::Api:
        return cloudState();
    case HealthItem::Delivery:
        return deliveryState();
    }
    Q_UNREACHABLE();
}

HealthVerdicts::State HealthVerdicts::accessibilityState() const
{
    const Localization& localization = m_sources.localization;
    if (m_sources.accessibility.isProcessTrusted())
        return {localization.LT(texts::accessibilityTrusted), HealthColor::Healthy};
    return {localization.LT(texts::accessibilityNotTrusted), HealthColor::Problem};
}

HealthVerdicts::State HealthVerdicts::microphoneState() const
{
    const Localization& localization = m_sources.localization;
    switch (m_sources.permissions.microphoneStatus()) {
    case AuthorizationStatus::Authorized:
        return {localization.LT(texts::microphoneAuthorized), HealthColor::Healthy};
    case AuthorizationStatus::NotDetermined:
        return {localization.LT(texts::microphoneNotDetermined), HealthColor::Problem};
    case AuthorizationStatus::Denied:
    case AuthorizationStatus::Restricted:
        break;
    }
    return {localization.desktopText(&DesktopTexts::microphoneDenied, texts::microphoneDenied),
        HealthColor::Problem};
}

HealthVerdicts::State HealthVerdicts::speechState() const
{
    const Localization& localization = m_sources.localization;
    constexpr LocalizedText nothing{u""};
    const QString missing = localization.desktopText(&DesktopTexts::recogniserMissing, nothing);
    switch (m_sources.permissions.speechStatus()) {
    case AuthorizationStatus::Authorized:
        if (!missing.isEmpty() && !m_sources.recognizer.isAvailable())
            return {missing, HealthColor::Problem};
        return {localization.LT(texts::speechAuthorized), HealthColor::Healthy};
    case AuthorizationStatus::NotDetermined:
        return {localization.LT(texts::speechNotDetermined), HealthColor::Problem};
    case AuthorizationStatus::Denied:
    case AuthorizationStatus::Restricted:
        break;
    }
    return {localization.LT(texts::speechDenied), HealthColor::Problem};
}

HealthVerdicts::State HealthVerdicts::cloudState() const
{
    const Localization& localization = m_sources.localization;
    const bool isSignedIn = !valueOf(m_sources.preferences, keys::cloudAccessToken).isEmpty()
        || !valueOf(m_sources.preferences, keys::cloudRefreshToken).isEmpty();
    if (isSignedIn)
        return {localization.LT(texts::cloudSignedIn), HealthColor::SignedIn};
    return {localization.LT(texts::cloudSignedOut), HealthColor::Problem};
}

HealthVerdicts::State HealthVerdicts::deliveryState() const
{
    const Localization& localization = m_sources.localization;
    const std::optional<bool> verified = stored(m_sources.preferences, keys::lastDeliveryVerified);
    if (!verified)
        return {localization.LT(texts::deliveryUnknown), HealthColor::Unknown};
    if (*verified)
        return {localization.LT(texts::deliveryVerified), HealthColor::Healthy};
    const QString reason = singleLine(valueOf(m_sources.preferences, keys::lastDeliveryReason));
    return {texts::deliveryFailed.toString().arg(orElse(reason, texts::deliveryNotVerified)),
        HealthColor::Problem};
}

QString HealthVerdicts::timeOfDay() const
{
    const auto seconds = static_cast<qint64>(std::floor(m_sources.clock.sinceEpoch().count()));
    return QDateTime::fromSecsSinceEpoch(seconds).time().toString(u"HH:mm:ss"_s);
}

} // namespace tavrin
