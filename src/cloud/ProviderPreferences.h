#pragma once

#include <QString>

namespace tavrin {

class Preferences;

/// `providerBaseURL`, or the default of this build while it is unset.
[[nodiscard]] QString providerBaseUrl(const Preferences& preferences);

/// `providerModel`, or its default while it is unset.
[[nodiscard]] QString providerModel(const Preferences& preferences);

} // namespace tavrin
