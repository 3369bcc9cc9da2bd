#pragma once

#include <functional>

namespace tavrin {

/// Silences PocketSphinx for the whole program: its log holds what was said.
void silenceSphinx();

/// Runs @p work, which calls into PocketSphinx. What the library calls a fatal error would end the
/// program: here it ends the work, whose C++ objects of its own must need no destructor. False
/// then.
[[nodiscard]] bool survivesSphinx(const std::function<void()>& work);

} // namespace tavrin
