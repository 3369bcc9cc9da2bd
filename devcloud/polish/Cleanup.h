#pragma once

#include "devcloud/polish/Sentence.h"

/// The steps that clean one sentence. Each is a function of the sentence alone.
namespace tavrin::devcloud {

/// Without what is said only to win time: "um" and 嗯 anywhere; 那个, "you know" … only where
/// commas or pauses on both sides show that nothing is meant by them.
Tokens withoutFillers(const Tokens& tokens);

/// Without stammered repeats ("the the", 我我我). A repeat that may be meant ("very very", 看看,
/// "had had") stays.
Tokens withoutRepeats(const Tokens& tokens);

/// With the marks of its language, in its width, one at a time, and commas before conjunctions
/// that open a new clause.
Tokens withMarksOf(const Tokens& tokens, bool chinese);

/// With capitals where English wants them: at the beginning, "I", names of days and months.
Tokens withEnglishCapitals(const Tokens& tokens);

/// The mark that ends the sentence: the one it has, in the width of its language, or else a
/// question mark after what is plainly a question, or a full stop.
std::u32string endMark(const Sentence& sentence);

} // namespace tavrin::devcloud
