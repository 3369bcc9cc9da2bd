#pragma once

#include "base/TextRange.h"

#include <QString>

#include <optional>

/// What an editor showed before and after a delivery, and what can be concluded from it. Values
/// only: they come from another program and may be missing, wrong or contradictory.
namespace tavrin {

/// An editor's text as it could be read at one moment; what is empty could not be read.
struct EditorObservation {
    std::optional<QString> text;
    std::optional<TextRange> range; ///< Selection, or the caret as a range of length 0.
    std::optional<qint64> count; ///< Length of the text in UTF-16 units.

    friend bool operator==(const EditorObservation&, const EditorObservation&) = default;
};

/// @p text with "\r\n" and then "\r" as "\n"; an absent text counts as empty.
[[nodiscard]] QString normalizedEditorText(const std::optional<QString>& text);

/// @p value with @p range replaced by @p text; empty when the value is unknown or the range does
/// not lie within it.
[[nodiscard]] std::optional<QString> expectedValueFrom(
    const std::optional<QString>& value, TextRange range, const QString& text);

/// Whether the caret stands behind a text of @p insertedLength units that replaced the selection
/// of @p before, and the count, as far as it is known, has grown to match.
[[nodiscard]] bool caretAndCountMatch(
    const EditorObservation& before, const EditorObservation& after, qint64 insertedLength);

/// Whether anything that was readable both times differs.
[[nodiscard]] bool hasVisibleChange(
    const EditorObservation& before, const EditorObservation& after);

/// Whether everything was readable both times, so that "no change" means that nothing happened.
[[nodiscard]] bool isObservationComplete(
    const EditorObservation& before, const EditorObservation& after);

} // namespace tavrin
