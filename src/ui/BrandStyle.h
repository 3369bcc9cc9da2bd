#pragma once

#include <QColor>
#include <QFont>

class QString;
class QWidget;

/// Colours and fonts of the brand, the same in light and dark desktops.
namespace tavrin::brand {

[[nodiscard]] QColor tavPurple(); ///< The accent.
[[nodiscard]] QColor tavWarmBackground();
[[nodiscard]] QColor tavSidebar();
[[nodiscard]] QColor tavBorder();
[[nodiscard]] QColor tavSecondaryText();
[[nodiscard]] QColor labelColor(); ///< Text that is not secondary.

[[nodiscard]] QFont tavPageTitleFont();
[[nodiscard]] QFont tavCardTitleFont();
[[nodiscard]] QFont tavRowTitleFont();
[[nodiscard]] QFont tavBodyFont();
[[nodiscard]] QFont tavCaptionFont();
[[nodiscard]] QFont tavControlFont();

/// The system font in this size, in points of the layout (96 to an inch on Linux).
[[nodiscard]] QFont systemFont(double size, QFont::Weight weight);

/// Gives every text of the program the Chinese glyphs of @p interfaceLanguage where the system font
/// has none; the system would choose Japanese ones. Called once, before the first window.
void useGlyphsOf(const QString& interfaceLanguage);

/// Colours @p window and what it holds by the brand, whatever the desktop's theme.
void applyBrandPalette(QWidget& window);

} // namespace tavrin::brand
