#pragma once

#include "base/Seconds.h"
#include "platform/speech/SpeechRecognizer.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace tavrin {

/// A recogniser on a server, as the user set it up.
struct SpeechServer {
    QString setAddress; ///< As typed; empty when none is set.
    std::optional<QUrl> address; ///< Empty when the typed one must not be used.
    QString language; ///< What it is set up to hear, a BCP 47 tag.
    QString model; ///< The name that the server expects.
    QString key; ///< Sent as bearer token; empty for none.
    Seconds patience = std::chrono::seconds{20}; ///< How long an answer may take beyond the sound.
};

/// Why a server without a usable address cannot serve.
[[nodiscard]] SpeechAvailability serverUnavailable(const SpeechServer& server);

} // namespace tavrin
