#pragma once

#include <QtGlobal>

namespace tavrin {

/// What the popups of the settings page for style and language show, `outputStylePopup` and
/// `translationPopup`; their rows are those of Settings.
struct OutputContent {
    qsizetype outputStyle = 0; ///< Row of `outputStyles`.
    qsizetype translationTarget = 0; ///< Row of `translationTargets`.

    friend bool operator==(const OutputContent&, const OutputContent&) = default;
};

} // namespace tavrin
