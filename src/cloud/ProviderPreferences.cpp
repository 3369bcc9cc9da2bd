#include "cloud/ProviderPreferences.h"

#include "cloud/Deployment.h"
#include "platform/PreferenceKeys.h"
#include "platform/PreferenceValues.h"

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
