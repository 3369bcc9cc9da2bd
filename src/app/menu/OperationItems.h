#pragma once

#include "app/vocabulary/OperationMode.h"
#include "app/vocabulary/SessionState.h"

#include <QString>

#include <array>

namespace tavrin {

class Localization;
class Settings;

/// How a menu item that starts or finishes an operation looks.
struct OperationItem {
    QString title;
    bool enabled = true;

    friend bool operator==(const OperationItem&, const OperationItem&) = default;
};

/// The items of dictation, translation and chat while a session of @p mode is in @p state; @p mode
/// means nothing while idle.
[[nodiscard]] std::array<OperationItem, 3> operationItems(
    SessionState state, OperationMode mode, Settings& settings, const Localization& localization);

} // namespace tavrin
