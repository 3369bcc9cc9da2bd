#include "platform/qt/QtHttpTransport.h"

#include "platform/qt/HttpErrors.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <functional>
#include <utility>

namespace tavrin {

/// Calls back from the event loop: off an exchange's own stack, and after send() has returned. What
/// still waits goes with it.
class QtHttpTransport::Deliveries final : public QObject {
public:
    void post(std::function<void()> delivery)
    {
        m_waiting.push_back(std::move(delivery));
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        const auto delivery = std::move(m_waiting.front());
        m_waiting.pop_front();
        delivery(); // May destroy this object.
        return true;
    }

private:
    std::deque<std::function<void()>> m_waiting;
};

QtHttpTransport::QtHttpTransport(const HttpLimits& limits, std::optional<QSslConfiguration> tls)
    : m_limits(limits)
    , m_tls(std::move(tls))
    , m_deliveries(std::make_unique<Deliveries>())
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
    if (!m_manager)
        m_manager.emplace();
    open->exchange = std::make_unique<HttpExchange>(
        *m_manager, tls(), m_limits, request, [this, open](const Result<HttpResponse>& answer) {
            m_deliveries->post([this, open, answer] { finish(open, answer); });
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
