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
[[nodiscard]] QColor secondaryLabelColor(); ///< Captions, explanations and placeholders.
[[nodiscard]] QColor disabledText();
[[nodiscard]] QColor deepPurple(); ///< The brand's purple as text.
[[nodiscard]] QColor blue(); ///< All is well.
[[nodiscard]] QColor green(); ///< Something was done, or is free.
[[nodiscard]] QColor systemOrange(); ///< A problem.
[[nodiscard]] QColor systemRed(); ///< An error, or what destroys something.

[[nodiscard]] QColor purpleHover();
[[nodiscard]] QColor purplePressed();
[[nodiscard]] QColor purpleDisabled();
[[nodiscard]] QColor tint(); ///< Behind notes, tiles and the badge of learned terms.
[[nodiscard]] QColor match(); ///< Behind found text.
[[nodiscard]] QColor fieldBackground(); ///< Of popups and fields.
[[nodiscard]] QColor hover(); ///< White controls under the pointer.
[[nodiscard]] QColor pressed();
[[nodiscard]] QColor borderHover();
[[nodiscard]] QColor popupBorderHover();
[[nodiscard]] QColor sand(); ///< Behind segments and the badge of other terms.
[[nodiscard]] QColor hairline(); ///< Between the rows of a card.
[[nodiscard]] QColor track(); ///< Around boxes and switches that are off.
[[nodiscard]] QColor wash(); ///< Behind a row with a problem.

[[nodiscard]] QFont tavPageTitleFont();
[[nodiscard]] QFont tavCardTitleFont();
[[nodiscard]] QFont tavRowTitleFont();
[[nodiscard]] QFont tavBodyFont();
[[nodiscard]] QFont tavCaptionFont();
[[nodiscard]] QFont tavControlFont();

[[nodiscard]] QFont tavSubtitleFont();
[[nodiscard]] QFont tavSidebarFont();
[[nodiscard]] QFont tavSectionFont();
[[nodiscard]] QFont tavFigureFont(); ///< Digits of one width, as in the next.
[[nodiscard]] QFont tavSmallFigureFont();
[[nodiscard]] QFont tavBadgeFont();

/// The system font in this size, in points of the layout (96 to an inch on Linux).
[[nodiscard]] QFont systemFont(double size, QFont::Weight weight);

/// Gives every text of the program the Chinese glyphs of @p interfaceLanguage where the system font
/// has none; the system would choose Japanese ones. Called once, before the first window.
void useGlyphsOf(const QString& interfaceLanguage);

/// Colours @p window and what it holds by the brand, whatever the desktop's theme.
void applyBrandControlStylesInView(QWidget& window);

} // namespace tavrin::brand
