#include "cloud/StoredSession.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"
#include "platform/preferences/Preferences.h"

using namespace Qt::StringLiterals;

namespace tavrin {

void SaveCloudSession(
    Preferences& preferences, const QJsonObject& response, const QString& fallbackEmail)
{
    const QJsonValue accessToken = response.value("accessToken"_L1);
    if (accessToken.isString())
        preferences.setValue(keys::cloudAccessToken, accessToken.toString());

    const QJsonValue refreshToken = response.value("refreshToken"_L1);
    if (refreshToken.isString())
        preferences.setValue(keys::cloudRefreshToken, refreshToken.toString());

    const QString email =
        response.value("user"_L1).toObject().value("email"_L1).toString(fallbackEmail);
    if (!email.isEmpty())
        preferences.setValue(keys::cloudAccountEmail, email);

    preferences.synchronize();
}

void clearCloudSession(Preferences& preferences)
{
    preferences.remove(keys::cloudAccessToken);
    preferences.remove(keys::cloudRefreshToken);
    preferences.remove(keys::cloudAccountEmail);
    preferences.synchronize();
}

bool hasCloudSession(const Preferences& preferences)
{
    const auto isStored = [&](const Setting<QString>& token) {
        return !valueOf(preferences, token).isEmpty();
    };
    return isStored(keys::cloudAccessToken) || isStored(keys::cloudRefreshToken);
}

} // namespace tavrin
