#pragma once

#include <QString>

namespace tavrin {

/// What a session does with what was said.
enum class OperationMode { Dictation = 0, Translation = 1, Chat = 2 };

/// What the panel and the history call it: "dictation", "translation" or "chat".
[[nodiscard]] inline QString operationName(OperationMode mode)
{
    switch (mode) {
    case OperationMode::Dictation:
        break;
    case OperationMode::Translation:
        return QStringLiteral("translation");
    case OperationMode::Chat:
        return QStringLiteral("chat");
    }
    return QStringLiteral("dictation");
}

} // namespace tavrin
