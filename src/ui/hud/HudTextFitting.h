#pragma once

#include <QFont>
#include <QList>
#include <QString>

#include <functional>

/// How the recording panel fits its texts into their places.
namespace tavrin::hud {

/// The width of a text in points.
using TextWidth = std::function<double(const QString& text)>;

/// The greatest size, in half points from @p asked downwards, at which a text is whole in
/// @p available: @p widthAt tells its width at a size, which need not be in proportion to it. Never
/// so small that nobody can read it.
[[nodiscard]] double fittingSize(
    double asked, double available, const std::function<double(double size)>& widthAt);

/// The width that each character of @p text takes when every digit takes that of the widest one,
/// so that a running time does not tremble.
[[nodiscard]] QList<double> tabularWidths(const QString& text, const TextWidth& widthOf);

} // namespace tavrin::hud
