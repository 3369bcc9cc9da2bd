#pragma once

#include <functional>

namespace tavrin {

/// Silences PocketSphinx for the whole program: its log holds what was said.
void silenceSphinx();

/// Runs @p work, which calls into PocketSphinx. At what it calls a fatal error the library would
/// end the program; here it only leaves @p work, by a jump: objects that @p work itself has made
/// are not destroyed then, so it must make none that own anything.
/// @return false when @p work was left in that way.
[[nodiscard]] bool runGuarded(const std::function<void()>& work);

} // namespace tavrin
