#pragma once

#include "platform/PreferenceKeys.h"
#include "platform/PreferenceValues.h"

namespace tavrin {

/// Whether somebody is signed in on this machine: a token of either kind is stored.
[[nodiscard]] inline bool hasCloudSession(const Preferences& preferences)
{
    const auto isStored = [&](const Setting<QString>& token) {
        return !valueOf(preferences, token).isEmpty();
    };
    return isStored(keys::cloudAccessToken) || isStored(keys::cloudRefreshToken);
}

} // namespace tavrin
