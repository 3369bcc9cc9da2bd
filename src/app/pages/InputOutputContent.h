#pragma once

#include "app/menu/OutputContent.h"
#include "app/shortcuts/ShortcutContent.h"

namespace tavrin {

/// What the page for input and output shows.
struct InputOutputContent {
    ShortcutContent shortcuts;
    OutputContent output;

    friend bool operator==(const InputOutputContent&, const InputOutputContent&) = default;
};

} // namespace tavrin
