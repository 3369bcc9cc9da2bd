#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

/// What stands between two spaces, with the marks at its ends taken apart: for `"Well,"` they are
/// `"`, `Well` and `,"`.
struct Run {
    std::u32string blanks; ///< Before it.
    std::u32string opening;
    std::u32string word;
    std::u32string closing;
    std::u32string small; ///< The word as EnglishWords.h wants it.

    /// Nothing but letters, with apostrophes and hyphens between them: no address, number or name
    /// of anything that a machine reads.
    [[nodiscard]] bool isPlain() const;
    /// Whether it has only small letters, all of them ASCII.
    [[nodiscard]] bool isSmall() const;
    [[nodiscard]] bool endsSentence() const;

    [[nodiscard]] bool endsWithComma() const { return closing == U","; }

    void capitalize();
};

using Runs = std::vector<Run>;

Runs runsOf(std::u32string_view line);
std::u32string textOf(const Runs& runs);

/// Whether a full stop behind this word ends a sentence: not so in "approx.", "no." and "U.S.".
bool mayEndSentence(const Run& run);

} // namespace tavrin::devcloud
