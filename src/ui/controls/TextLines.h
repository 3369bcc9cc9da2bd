#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

namespace tavrin::ui {

/// A text as it is drawn: the font that it fits in, and its lines.
struct TextLines {
    QFont font;
    QStringList lines;
    bool isElided = false;
};

/// How a text that is wider than its frame is made to fit.
struct Fitting {
    double mostSmaller = 1; ///< By how many points, in steps of half a point, before it is wrapped.
    int mostLines = 2; ///< At the full size; after the last comes an ellipsis.
};

/// One that never grows smaller nor takes a second line.
inline constexpr Fitting elideAtOnce{0, 1};

/// @p text, line breaks as spaces, in lines of @p width points. Only so much of it is looked at as
/// could be seen.
[[nodiscard]] TextLines fitText(
    const QString& text, const QFont& font, double width, const Fitting& fitting);

/// @p text in lines of @p width, an ellipsis after the last of @p mostLines. Line breaks of the
/// text are kept.
[[nodiscard]] QStringList wrapText(
    const QString& text, const QFont& font, double width, int mostLines);

} // namespace tavrin::ui
