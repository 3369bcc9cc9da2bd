#include "app/StoredSessionHistory.h"

#include "history/HistoryStore.h"

namespace tavrin {

StoredSessionHistory::StoredSessionHistory(HistoryStore& store)
    : m_store(store)
{
}

void StoredSessionHistory::saveHistoryTranscript(const FinishedSession& session)
{
    m_store.saveHistoryTranscript({
        .transcript = session.transcript,
        .finalText = session.finalText,
        .delivery = session.delivery,
        .mode = operationName(session.mode),
        .targetLanguage = session.targetLanguage,
        .audio = session.audio,
        .processing = session.processing,
        .application = session.application.toVariantMap(),
    });
}

} // namespace tavrin
