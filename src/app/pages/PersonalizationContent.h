#pragma once

#include "app/windows/View.h"

#include <QString>

namespace tavrin {

/// What the personalization window shows.
struct PersonalizationContent {
    QString sample; ///< `styleSampleTextView`: as the user typed it.
    qsizetype tone = 0; ///< `tonePopup`: the row of writingTones.

    friend bool operator==(const PersonalizationContent&, const PersonalizationContent&) = default;
};

/// The window itself. Main thread only.
class PersonalizationView : public View<PersonalizationContent> {
public:
    /// Shows the window before the program's other ones, and gives it the keyboard.
    virtual void bringToFront() = 0;
};

} // namespace tavrin
