#pragma once

#include <string>
#include <string_view>

/// What is known about single words. All are asked for in small letters, with straight apostrophes.
namespace tavrin::devcloud {

/// The word in small letters with straight apostrophes; letters beyond ASCII stay.
std::u32string folded(std::u32string_view word);

/// A word that English has and no other language that is written like it.
bool isOnlyEnglish(std::u32string_view word);
/// A common word of English, in any of its forms; other languages may have it too.
bool isEnglish(std::u32string_view word);
/// A common word of another language that English does not have.
bool isForeign(std::u32string_view word);

/// A word that stands behind "I", and beside no variable.
bool isVerbOfSpeaker(std::u32string_view word);

/// A verb whose form shows that somebody does it: "makes", "wrote". Nouns are none.
bool isFiniteVerb(std::u32string_view word);

/// A word with which no command and no line of code begins, and no name either.
bool opensProse(std::u32string_view word);

/// The name of a program whose line is a command when it stands first: "sudo", "grep" …
bool isCommand(std::u32string_view word);
/// One that is a word of English too: "which", "find". Before another one it is no command.
bool mayBeCommand(std::u32string_view word);
/// Whether the two begin a command wherever they stand: "git push", "npm install" …
bool areCommand(std::u32string_view program, std::u32string_view next);

} // namespace tavrin::devcloud
