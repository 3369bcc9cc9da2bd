#pragma once

namespace tavrin {

/// What a session does with what was said.
enum class OperationMode { Dictation = 0, Translation = 1, Chat = 2 };

} // namespace tavrin
