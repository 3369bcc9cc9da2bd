#pragma once

#include "platform/HttpTransport.h"
#include "platform/MainQueue.h"
#include "support/ports/Note.h"

#include <QList>

#include <memory>

namespace tavrin::testing {

/// A network whose answers the test gives: beforehand with willAnswer(), or later, one by one, with
/// answer(). Nothing leaves the process.
class InMemoryHttpTransport final : public HttpTransport {
public:
    using Answer = Result<HttpResponse>;

    static constexpr qsizetype largestBody = 8LL * 1024 * 1024;

    /// @param queue delivers the answers; must outlive the transport.
    /// @param note is told of the method and the path of each request: "POST /v1/text/polish".
    explicit InMemoryHttpTransport(MainQueue& queue, Note note = {});
    ~InMemoryHttpTransport() override;

    InMemoryHttpTransport(const InMemoryHttpTransport&) = delete;
    InMemoryHttpTransport& operator=(const InMemoryHttpTransport&) = delete;

    void send(const HttpRequest& request, ResponseCompletion completion) override;

    /// The answer to the next request that has none yet; the queue delivers it.
    void willAnswer(int status, const QByteArray& body = {});
    void willFail(HttpFailure reason);

    /// Answers the oldest request still waiting, now.
    void answer(int status, const QByteArray& body = {});
    void fail(HttpFailure reason);

    /// Every request sent so far, oldest first; without those that were refused.
    [[nodiscard]] const QList<HttpRequest>& requests() const { return m_requests; }

    /// Requests still without an answer.
    [[nodiscard]] qsizetype open() const { return m_open->size(); }

    [[nodiscard]] static Error error(HttpFailure reason);

private:
    struct Open {
        int number;
        ResponseCompletion completion;
    };

    void post(int number, const Answer& answer);

    MainQueue& m_queue;
    Note m_note;
    QList<HttpRequest> m_requests;
    QList<Answer> m_prepared;
    std::shared_ptr<QList<Open>> m_open = std::make_shared<QList<Open>>();
    int m_sent = 0;
};

} // namespace tavrin::testing
