#include "cloud/ProviderPreferences.h"

#include "cloud/Deployment.h"
#include "platform/PreferenceKeys.h"
#include "platform/PreferenceValues.h"

using namespace Qt::StringLiterals;

namespace tavrin {

QString providerBaseUrl(const Preferences& preferences)
{
    return storedString(preferences, keys::providerBaseURL)
        .value_or(deployment::defaultProviderBaseUrl);
}

QString providerModel(const Preferences& preferences)
{
    return storedString(preferences, keys::providerModel).value_or(u"gemini-3.5-flash"_s);
}

} // namespace tavrin
