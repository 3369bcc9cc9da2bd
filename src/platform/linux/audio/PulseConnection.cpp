#include "platform/linux/audio/PulseConnection.h"

#include "platform/linux/libraries/Libpulse.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {

using namespace libpulse;

PulseConnection::PulseConnection()
    // The loop's own wake-up would not do: one that comes before the loop waits is lost.
    : m_tasksWaiting(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , m_thread([this] { run(); })
{
}

PulseConnection::~PulseConnection()
{
    m_quit = true;
    post([] {});
    m_thread.join();
    ::close(m_tasksWaiting);
}

PulseConnection::Deadline PulseConnection::patience()
{
    return std::chrono::steady_clock::now() + 450ms;
}

void PulseConnection::warmUp()
{
    post([this] { whenConnected([](pa_context*) {}); });
}

void PulseConnection::post(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    eventfd_write(m_tasksWaiting, 1);
}

quint64 PulseConnection::changes() const
{
    const std::lock_guard lock(m_mutex);
    return m_changes;
}

bool PulseConnection::waitForChange(quint64 seen, Deadline deadline) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_until(lock, deadline, [&] { return m_changes != seen; });
}

void PulseConnection::run()
{
    // The library is loaded when there is something to do: not while the program starts.
    pollfd tasksWaiting{m_tasksWaiting, POLLIN, 0};
    while (::poll(&tasksWaiting, 1, -1) < 0) { }
    if (m_quit)
        return;
    m_loop = pa_mainloop_new();
    pa_mainloop_api* api = pa_mainloop_get_api(m_loop);
    if (!api) { // No library: nobody gets an answer.
        while (!m_quit) {
            runTasks();
            ::poll(&tasksWaiting, 1, -1);
        }
        return;
    }
    pa_io_event* tasks = api->io_new(
        api, m_tasksWaiting, PA_IO_EVENT_INPUT,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* self) {
            static_cast<PulseConnection*>(self)->runTasks();
        },
        this);
    while (!m_quit)
        pa_mainloop_iterate(m_loop, 1, nullptr);
    runTasks();
    dropContext();
    api->io_free(tasks);
    pa_mainloop_free(m_loop);
}

void PulseConnection::runTasks()
{
    eventfd_t waiting = 0;
    eventfd_read(m_tasksWaiting, &waiting); // Before taking them: what comes later wakes again.
    std::unique_lock lock(m_mutex);
    const auto tasks = std::exchange(m_tasks, {});
    lock.unlock();
    for (const auto& task : tasks)
        task();
}

/// Runs @p task with the context as soon as there is one, or drops it when none can be had.
void PulseConnection::whenConnected(WhenConnected task)
{
    if (!m_context)
        connect();
    if (!m_context)
        return;
    if (pa_context_get_state(m_context) == PA_CONTEXT_READY)
        task(m_context);
    else
        m_waiting.push_back(std::move(task));
}

void PulseConnection::connect()
{
    ++m_contexts;
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Tavrin");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "tavrin");
    m_context = pa_context_new_with_proplist(pa_mainloop_get_api(m_loop), "Tavrin", properties);
    pa_proplist_free(properties);

    pa_context_set_state_callback(
        m_context,
        [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->contextStateChanged(); },
        this);
    pa_context_set_subscribe_callback(
        m_context,
        [](pa_context*, pa_subscription_event_type_t, uint32_t, void* self) {
            static_cast<PulseConnection*>(self)->countChange();
        },
        this);
    // Starting a server is the desktop's business.
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        dropContext();
}

void PulseConnection::contextStateChanged()
{
    const pa_context_state_t state = pa_context_get_state(m_context);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        // Not here: libpulse still works on the context that it reports about.
        post([this, failed = m_contexts] {
            if (m_contexts == failed)
                dropContext();
        });
        return;
    }
    if (state != PA_CONTEXT_READY)
        return;
    constexpr auto devicesAndDefaults = static_cast<pa_subscription_mask_t>(
        PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER);
    if (auto* operation = pa_context_subscribe(m_context, devicesAndDefaults, nullptr, nullptr))
        pa_operation_unref(operation);
    countChange();
    for (const WhenConnected& task : std::exchange(m_waiting, {}))
        task(m_context);
}

/// Forgets the context and leaves its questions without an answer.
void PulseConnection::dropContext()
{
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
    }
    m_waiting.clear();
    m_open.clear();
    countChange();
}

void PulseConnection::countChange()
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_changes;
    }
    m_changed.notify_all();
}

void PulseConnection::begin(const std::shared_ptr<QuestionBase>& question, pa_operation* operation)
{
    if (!operation)
        return;
    begin(question, true);
    // An operation goes without a word when its stream or the context ends.
    pa_operation_set_state_callback(
        operation,
        [](pa_operation* ended, void* data) {
            if (pa_operation_get_state(ended) == PA_OPERATION_CANCELLED)
                static_cast<QuestionBase*>(data)->finish();
        },
        question.get());
    pa_operation_unref(operation);
}

void PulseConnection::begin(const std::shared_ptr<QuestionBase>& question, bool begun)
{
    if (!begun)
        return;
    question->m_fate->isBegun = true;
    m_open.emplace(question.get(), question);
}

void PulseConnection::close(QuestionBase* question)
{
    m_open.erase(question);
}

} // namespace tavrin
