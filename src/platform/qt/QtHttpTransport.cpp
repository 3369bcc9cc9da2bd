#include "platform/qt/QtHttpTransport.h"

#include "platform/qt/HttpErrors.h"

#include <QTimer>

#include <utility>

namespace tavrin {

QtHttpTransport::QtHttpTransport(const HttpLimits& limits, std::optional<QSslConfiguration> tls)
    : m_limits(limits)
    , m_tls(std::move(tls))
{
}

QtHttpTransport::~QtHttpTransport()
{
    m_closing = true;
    while (!m_open.empty()) {
        const ResponseCompletion completion = m_open.front().completion;
        m_open.pop_front();
        completion(failure(httpError(HttpFailure::Cancelled)));
    }
}

void QtHttpTransport::send(const HttpRequest& request, ResponseCompletion completion)
{
    const auto open = m_open.insert(m_open.end(), Open{nullptr, std::move(completion)});
    if (m_closing)
        return;
    open->exchange = std::make_unique<HttpExchange>(
        m_manager, tls(), m_limits, request, [this, open](const Result<HttpResponse>& answer) {
            // Off the exchange's own stack, and after send() has returned.
            QTimer::singleShot(0, &m_deliveries, [this, open, answer] { finish(open, answer); });
        });
    open->exchange->start();
}

const QSslConfiguration& QtHttpTransport::tls()
{
    if (!m_tls)
        m_tls = QSslConfiguration::defaultConfiguration();
    return *m_tls;
}

void QtHttpTransport::finish(std::list<Open>::iterator request, const Result<HttpResponse>& answer)
{
    const ResponseCompletion completion = request->completion;
    m_open.erase(request);
    completion(answer); // May destroy this transport.
}

} // namespace tavrin
