#pragma once

#include <QtGlobal>

namespace tavrin {

/// The popups of the settings page that choose style and language: `outputStylePopup` and
/// `translationPopup`. Main thread only.
class OutputControls {
public:
    virtual ~OutputControls() = default;

    /// Shows the row of `outputStyles` without telling anyone that it was chosen.
    virtual void setOutputStyleIndex(qsizetype index) = 0;

    /// The same for a row of `translationTargets`.
    virtual void setTranslationTargetIndex(qsizetype index) = 0;
};

} // namespace tavrin
