#pragma once

#include "base/LocalizedText.h"
#include "base/Result.h"

namespace tavrin {

/// What goes wrong with recordings: domain "TavrinAudio", worded by the texts of RecordingTexts.h.
[[nodiscard]] inline Error audioError(int code, const SimplifiedText& text)
{
    return {QStringLiteral("TavrinAudio"), code, text.toString()};
}

} // namespace tavrin
