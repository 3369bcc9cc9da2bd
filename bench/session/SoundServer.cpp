#include "SoundServer.h"

#include "Report.h"

#include <pulse/glib-mainloop.h>
#include <pulse/pulseaudio.h>
#include <stdexcept>

namespace bench {

struct SoundServer::Connection {
    pa_glib_mainloop* loop = pa_glib_mainloop_new(nullptr);
    pa_context* context = pa_context_new(pa_glib_mainloop_get_api(loop), "observer");
};

namespace {

void subscribeWhenReady(pa_context* context, void* /*data*/)
{
    if (pa_context_get_state(context) != PA_CONTEXT_READY)
        return;
    pa_operation_unref(
        pa_context_subscribe(context, PA_SUBSCRIPTION_MASK_SOURCE_OUTPUT, nullptr, nullptr));
}

void handleChange(
    pa_context* /*context*/, pa_subscription_event_type_t type, uint32_t /*index*/, void* /*data*/)
{
    if ((type & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_NEW)
        report("recording");
}

} // namespace

SoundServer::SoundServer()
    : m_connection(std::make_unique<Connection>())
{
    pa_context* context = m_connection->context;
    pa_context_set_state_callback(context, subscribeWhenReady, nullptr);
    pa_context_set_subscribe_callback(context, handleChange, nullptr);
    if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        throw std::runtime_error("no sound server");
}

SoundServer::~SoundServer()
{
    pa_context_disconnect(m_connection->context);
    pa_context_unref(m_connection->context);
    pa_glib_mainloop_free(m_connection->loop);
}

} // namespace bench
