#include "platform/linux/audio/PulseSources.h"

#include "platform/linux/libraries/Libpulse.h"

namespace tavrin {

using namespace libpulse;

std::optional<DefaultDevices> askDefaultDevices(
    PulseConnection& connection, PulseConnection::Deadline deadline)
{
    using Question = PulseConnection::Question<DefaultDevices>;
    return connection.ask<DefaultDevices>(deadline, [](pa_context* context, Question* question) {
        return pa_context_get_server_info(
            context,
            [](pa_context*, const pa_server_info* info, void* data) {
                auto& asked = Question::in(data);
                if (info)
                    asked.answer() = {info->default_source_name, info->default_sink_name};
                asked.finish();
            },
            question);
    });
}

bool isMonitor(const pa_source_info& source)
{
    return source.monitor_of_sink != PA_INVALID_INDEX;
}

} // namespace tavrin
