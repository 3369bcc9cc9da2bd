#pragma once

#include "platform/linux/libraries/SharedLibrary.h"

#include <pulse/pulseaudio.h>

/// The client library of the sound server. It brings the codecs of every sound file along, though
/// only uncompressed sound passes through it here.
namespace tavrin::libpulse {

inline constinit const SharedLibrary pulse{"libpulse.so.0"};

// NOLINTBEGIN(readability-identifier-naming): the library's own names
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_connect)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_disconnect)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_server_info)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_sink_info_by_name)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_sink_info_list)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_source_info_by_name)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_source_info_list)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_get_state)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_new)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_new_with_proplist)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_set_default_source)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_set_sink_mute_by_name)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_set_sink_volume_by_name)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_set_state_callback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_set_subscribe_callback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_subscribe)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_context_unref)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_cvolume_max)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_cvolume_scale)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_mainloop_free)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_mainloop_get_api)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_mainloop_iterate)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_mainloop_new)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_operation_get_state)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_operation_set_state_callback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_operation_unref)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_proplist_free)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_proplist_new)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_proplist_sets)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_connect_playback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_connect_record)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_cork)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_disconnect)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_drain)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_drop)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_get_state)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_new)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_new_with_proplist)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_peek)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_readable_size)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_set_read_callback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_set_state_callback)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_unref)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_stream_write)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_sw_volume_from_dB)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_free)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_get_api)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_lock)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_new)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_start)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_stop)
TAVRIN_LIBRARY_FUNCTION(pulse, pa_threaded_mainloop_unlock)
// NOLINTEND(readability-identifier-naming)

} // namespace tavrin::libpulse
