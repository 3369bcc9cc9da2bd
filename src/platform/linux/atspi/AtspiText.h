#pragma once

#include "base/TextRange.h"
#include "platform/linux/atspi/GObjectHandle.h"
#include "platform/linux/atspi/TextOffsets.h"

#include <QString>

#include <atspi/atspi.h>
#include <chrono>
#include <optional>

namespace tavrin {

/// Reads and writes the text of one element; the one place where positions of the bus become
/// UTF-16 units and back. Worker thread only.
///
/// Editors that count code points need the text itself to convert a position. It is read once for
/// a group of questions and used for a tenth of a second, as long as the editor's count stays.
class AtspiTextReader {
public:
    /// Reads no more than this many characters, whatever an editor claims to hold.
    static constexpr qint64 mostCharacters = qint64(4) * 1024 * 1024;

    [[nodiscard]] std::optional<QString> value(AtspiAccessible* element);
    [[nodiscard]] std::optional<TextRange> selectedRange(AtspiAccessible* element);
    [[nodiscard]] std::optional<qint64> numberOfCharacters(AtspiAccessible* element);
    [[nodiscard]] std::optional<QString> stringForRange(AtspiAccessible* element, TextRange range);

    bool replaceSelection(AtspiAccessible* element, const QString& text);
    bool setSelectedRange(AtspiAccessible* element, TextRange range);

    /// Replaces the whole text.
    static bool setValue(AtspiAccessible* element, const QString& text);

    /// Whether the element lets others write.
    [[nodiscard]] static bool isEditable(AtspiAccessible* element);

    /// Forgets what was read.
    void clear();

private:
    struct Snapshot {
        GObjectHandle<AtspiAccessible> element;
        QString text;
        int count = 0; // As the editor counts.
        OffsetUnit unit = OffsetUnit::CodePoints;
        std::chrono::steady_clock::time_point readAt;
    };

    /// The element's text, not older than a tenth of a second; null when it has none.
    const Snapshot* read(AtspiAccessible* element);

    std::optional<Snapshot> m_snapshot;
};

} // namespace tavrin
