#include "support/ports/InMemoryHttpTransport.h"

#include <algorithm>
#include <utility>

namespace tavrin::testing {
namespace {

using Answer = InMemoryHttpTransport::Answer;

bool breaksTheLine(const QByteArray& text)
{
    return text.contains('\r') || text.contains('\n') || text.contains('\0');
}

bool refused(const HttpRequest& request)
{
    return !request.url.isValid() || request.url.host().isEmpty()
        || std::ranges::any_of(request.headers, [](const auto& header) {
               return breaksTheLine(header.first) || breaksTheLine(header.second);
           });
}

/// @p answer as a transport lets it through.
Answer received(const Answer& answer)
{
    if (answer && answer->body.size() > InMemoryHttpTransport::largestBody)
        return failure(InMemoryHttpTransport::error(HttpFailure::TooLarge));
    return answer;
}

} // namespace

InMemoryHttpTransport::InMemoryHttpTransport(MainQueue& queue, Note note)
    : m_queue(queue)
    , m_note(std::move(note))
{
}

InMemoryHttpTransport::~InMemoryHttpTransport()
{
    while (!m_open->isEmpty())
        m_open->takeFirst().completion(failure(error(HttpFailure::Cancelled)));
}

void InMemoryHttpTransport::send(const HttpRequest& request, ResponseCompletion completion)
{
    tell(m_note, QString::fromLatin1(request.method) + QLatin1Char(' ') + request.url.path());
    const int number = m_sent++;
    m_open->append({number, std::move(completion)});
    if (refused(request)) {
        post(number, failure(error(HttpFailure::Refused)));
        return;
    }
    m_requests.append(request);
    if (!m_prepared.isEmpty())
        post(number, received(m_prepared.takeFirst()));
}

void InMemoryHttpTransport::willAnswer(int status, const QByteArray& body)
{
    m_prepared.append(HttpResponse{status, body});
}

void InMemoryHttpTransport::willFail(HttpFailure reason)
{
    m_prepared.append(failure(error(reason)));
}

void InMemoryHttpTransport::answer(int status, const QByteArray& body)
{
    m_open->takeFirst().completion(received(HttpResponse{status, body}));
}

void InMemoryHttpTransport::fail(HttpFailure reason)
{
    m_open->takeFirst().completion(failure(error(reason)));
}

Error InMemoryHttpTransport::error(HttpFailure reason)
{
    return Error{
        httpTransportErrorDomain, static_cast<int>(reason), QStringLiteral("The network failed.")};
}

void InMemoryHttpTransport::post(int number, const Answer& answer)
{
    m_queue.post([open = std::weak_ptr(m_open), number, answer] {
        const auto requests = open.lock();
        if (!requests)
            return;
        const auto request = std::ranges::find(*requests, number, &Open::number);
        if (request == requests->end())
            return;
        const ResponseCompletion completion = request->completion;
        requests->erase(request);
        completion(answer);
    });
}

} // namespace tavrin::testing
