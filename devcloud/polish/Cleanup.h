#pragma once

#include <string>
#include <string_view>

/// The steps that clean one line of a text. Each leaves what it is not sure of as it stands.
namespace tavrin::devcloud {

/// A line of a Chinese text: a sound that stands alone goes, a stammered beginning is said once,
/// marks between characters get their width. With @p isWhole, when the line is all there is, it
/// gets the mark that ends it.
std::u32string cleanedChinese(std::u32string_view line, bool isWhole);

/// A line of an English text: likewise; "I", days and months get their capitals, and so does the
/// word that opens a sentence. One of several lines may begin within one.
std::u32string cleanedEnglish(std::u32string_view line, bool isWhole);

} // namespace tavrin::devcloud
