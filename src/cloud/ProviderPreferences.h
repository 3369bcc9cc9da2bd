#pragma once

#include <QString>

namespace tavrin {

class Preferences;

/// `providerBaseURL`, or the default of this build while it is unset.
[[nodiscard]] QString providerBaseUrl(const Preferences& preferences);

/// `providerModel`, or "gemini-3.5-flash" while it is unset.
[[nodiscard]] QString providerModel(const Preferences& preferences);

} // namespace tavrin
