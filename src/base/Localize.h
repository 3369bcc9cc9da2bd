#pragma once

#include <QString>

#include <functional>

namespace tavrin {

struct LocalizedText;

/// The text in the interface language of the moment; what modules below the settings are given to
/// choose their texts with.
using Localize = std::function<QString(const LocalizedText&)>;

} // namespace tavrin
