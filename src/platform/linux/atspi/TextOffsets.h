#pragma once

#include <QStringView>

namespace tavrin {

/// What an editor's positions count.
enum class OffsetUnit {
    CodePoints, ///< GTK, Chromium.
    Utf16Units, ///< Qt, LibreOffice.
};

/// The length of @p text in UTF-16 units, given in @p unit.
[[nodiscard]] qint64 offsetCount(QStringView text, OffsetUnit unit);

/// The position @p offset of @p unit as UTF-16 units within @p text; an offset beyond the end
/// counts on behind it.
[[nodiscard]] qint64 utf16FromOffset(QStringView text, qint64 offset, OffsetUnit unit);

/// The UTF-16 position @p position within @p text, in @p unit; a position inside a surrogate pair
/// counts as behind it, one beyond the end counts on behind it.
[[nodiscard]] qint64 offsetFromUtf16(QStringView text, qint64 position, OffsetUnit unit);

/// The unit in which a text of @p text has @p count characters; @p usual where both units agree or
/// neither does.
[[nodiscard]] OffsetUnit offsetUnitFor(QStringView text, qint64 count, OffsetUnit usual);

} // namespace tavrin
