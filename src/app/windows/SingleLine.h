#pragma once

#include <QString>

#include <algorithm>

namespace tavrin {

/// @p text, which somebody else wrote, as one line for a label: without line breaks, control
/// characters and marks that turn the direction of what follows, and of at most @p longest UTF-16
/// units, ending in "…" when something is left out.
[[nodiscard]] inline QString singleLine(const QString& text, qsizetype longest = 500)
{
    const auto turnsDirection = [](QChar character) {
        const char16_t unit = character.unicode();
        return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    };
    // White space shrinks below: a little more than what fits is enough to see that it does not.
    QString line = text.first(std::min(text.size(), longest * 4));
    for (QChar& character : line) {
        if (turnsDirection(character) || character.category() == QChar::Other_Control)
            character = u' ';
    }
    line = line.simplified();
    if (line.size() <= longest)
        return line;
    line.truncate(longest - 1);
    if (line.back().isHighSurrogate())
        line.chop(1);
    return line + u'…';
}

} // namespace tavrin
