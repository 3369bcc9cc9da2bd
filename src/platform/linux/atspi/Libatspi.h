#pragma once

#include "platform/linux/libraries/SharedLibrary.h"

#include <atspi/atspi.h>

/// The client library of the accessibility bus, and what it stands on. GLib itself is linked: Qt
/// brings it along anyway.
namespace tavrin::libatspi {

inline constinit const SharedLibrary atspi{"libatspi.so.0", 0};
inline constinit const SharedLibrary gobject{"libgobject-2.0.so.0", 0};

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_application)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_child_at_index)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_child_count)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_component_iface)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_editable_text_iface)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_name)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_process_id)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_role)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_state_set)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_text_iface)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_accessible_get_toolkit_name)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_component_grab_focus)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_editable_text_delete_text)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_editable_text_insert_text)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_editable_text_set_text_contents)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_event_get_type)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_event_listener_deregister)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_event_listener_new)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_event_listener_register)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_get_desktop)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_init)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_set_timeout)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_state_set_contains)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_add_selection)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_get_caret_offset)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_get_character_count)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_get_n_selections)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_get_selection)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_get_text)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_set_caret_offset)
TAVRIN_LIBRARY_FUNCTION(atspi, atspi_text_set_selection)
TAVRIN_LIBRARY_FUNCTION(gobject, g_boxed_free)
TAVRIN_LIBRARY_FUNCTION(gobject, g_object_ref)
TAVRIN_LIBRARY_FUNCTION(gobject, g_object_unref)
// NOLINTEND(readability-identifier-naming)

} // namespace tavrin::libatspi
