#include "cloud/ProviderPreferences.h"

#include "cloud/Deployment.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

using namespace Qt::StringLiterals;

namespace tavrin {

QString providerBaseUrl(const Preferences& preferences)
{
    return stored(preferences, keys::providerBaseURL).value_or(deployment::defaultProviderBaseUrl);
}

QString providerModel(const Preferences& preferences)
{
    return valueOf(preferences, keys::providerModel);
}

} // namespace tavrin
