#include "platform/linux/atspi/AtspiWorker.h"

#include <glib.h>
#include <utility>

namespace tavrin {
namespace {

using Job = std::function<void()>;

gboolean runJob(gpointer data)
{
    (*static_cast<Job*>(data))();
    return G_SOURCE_REMOVE;
}

void deleteJob(gpointer data)
{
    delete static_cast<Job*>(data);
}

} // namespace

AtspiWorker::AtspiWorker(std::function<void()> stop)
    : m_context(g_main_context_default())
    , m_loop(g_main_loop_new(m_context, FALSE))
    , m_thread([this, stop = std::move(stop)] { run(stop); })
{
}

AtspiWorker::~AtspiWorker()
{
    post([this] { g_main_loop_quit(m_loop); });
    m_thread.join();
    g_main_loop_unref(m_loop);
}

void AtspiWorker::post(std::function<void()> job)
{
    // A source of its own rather than g_main_context_invoke(), which would run the job right here
    // while nobody owns the context.
    attach(g_idle_source_new(), std::move(job));
}

void AtspiWorker::postAfter(Seconds pause, std::function<void()> job)
{
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(pause).count();
    attach(g_timeout_source_new(static_cast<guint>(milliseconds)), std::move(job));
}

void AtspiWorker::attach(GSource* source, std::function<void()> job)
{
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, runJob, new Job(std::move(job)), deleteJob);
    g_source_attach(source, m_context);
    g_source_unref(source);
}

Seconds AtspiWorker::patienceLeft() const
{
    const bool isInRow = std::chrono::steady_clock::now() - m_rowEnd < pauseWithinRow;
    return isInRow ? patience - m_waited : patience;
}

void AtspiWorker::noteWait(std::chrono::steady_clock::time_point start)
{
    const auto now = std::chrono::steady_clock::now();
    m_waited = (start - m_rowEnd < pauseWithinRow ? m_waited : Seconds(0)) + (now - start);
    m_rowEnd = now;
}

void AtspiWorker::run(const std::function<void()>& stop)
{
    g_main_loop_run(m_loop);
    stop();
}

} // namespace tavrin
