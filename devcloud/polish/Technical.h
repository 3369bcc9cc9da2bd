#pragma once

#include <string_view>

/// What is written for a machine and must reach it as it was said.
namespace tavrin::devcloud {

/// Whether a line holds code or a command, or looks like it: braces, flags, pipes, "git push".
/// Addresses and paths alone make none.
bool isTechnical(std::u32string_view line);

/// Whether a line begins as an item of a list does: "1.", "- ", 一、.
bool isListItem(std::u32string_view line);

} // namespace tavrin::devcloud
