#pragma once

#include "app/SessionHistory.h"

namespace tavrin {

class HistoryStore;

/// Keeps what sessions have come to in the history store. Main thread only.
class StoredSessionHistory final : public SessionHistory {
public:
    /// @param store must outlive it.
    explicit StoredSessionHistory(HistoryStore& store);

    void saveHistoryTranscript(const FinishedSession& session) override;

private:
    HistoryStore& m_store;
};

} // namespace tavrin
