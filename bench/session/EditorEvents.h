#pragma once

#include <gio/gio.h>

namespace bench {

/// Reports "inserted TEXT" when an editor tells the accessibility bus that text has come in; line
/// ends are given as blanks. Belongs to the thread of GLib's default main loop.
class EditorEvents {
public:
    /// Throws std::runtime_error without an accessibility bus.
    EditorEvents();
    ~EditorEvents();
    EditorEvents(const EditorEvents&) = delete;
    EditorEvents& operator=(const EditorEvents&) = delete;

private:
    GDBusConnection* m_bus = nullptr;
};

} // namespace bench
