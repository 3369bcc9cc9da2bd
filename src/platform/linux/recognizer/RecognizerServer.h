#pragma once

namespace tavrin {

class SpeechEngine;

/// Lets the program at the other end of two pipes use an engine, until that program goes or says
/// what makes no sense. Loads the engine first. Stays on the calling thread.
/// @param input, output are taken over.
/// @return whether the program went in peace.
[[nodiscard]] bool serveRecognizer(SpeechEngine& engine, int input, int output);

} // namespace tavrin
