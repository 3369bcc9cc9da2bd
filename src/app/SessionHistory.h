#pragma once

#include "app/OperationMode.h"
#include "base/Seconds.h"
#include "delivery/ApplicationContext.h"

#include <QString>

namespace tavrin {

/// What a session has come to, once its text has been delivered.
struct FinishedSession {
    QString transcript; ///< What was said.
    QString finalText; ///< What was delivered.
    QString delivery; ///< How that went, in words that are kept as they are.
    OperationMode mode = OperationMode::Dictation;
    QString targetLanguage; ///< A translation target; null unless the mode is translation.
    Seconds audio{0};
    Seconds processing{0};
    ApplicationContext application;

    friend bool operator==(const FinishedSession&, const FinishedSession&) = default;
};

/// Keeps what sessions have come to, as far as the user wants that. Main thread only.
class SessionHistory {
public:
    virtual ~SessionHistory() = default;

    virtual void saveHistoryTranscript(const FinishedSession& session) = 0;
};

} // namespace tavrin
