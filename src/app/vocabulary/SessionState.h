#pragma once

namespace tavrin {

/// Where the one session of the program stands.
enum class SessionState { Idle = 0, Recording = 1, Processing = 2 };

} // namespace tavrin
