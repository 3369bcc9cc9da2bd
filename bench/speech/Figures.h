#pragma once

#include "Recognition.h"

namespace tavrin::bench {

/// Error rate and time of finished recordings beside the peer's, voice by voice.
void printFinalTranscription(OwnRecognizer& own, const QString& folder);

/// How many of ten names are understood with and without favouring them.
void printTermRecall(OwnRecognizer& own, const QString& folder);

/// How soon after the voice sets in the first text comes.
void printLiveText(OwnRecognizer& own, const QString& folder);

/// Whether a recording of ten minutes is understood as well as its sentences one by one, and what
/// memory that takes.
void printLongRecordings(OwnRecognizer& own, const QString& folder);

} // namespace tavrin::bench
