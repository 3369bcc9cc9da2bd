#pragma once

#include <memory>

namespace bench {

/// Reports "recording" when a program begins to record. Belongs to the thread of GLib's default
/// main loop.
class SoundServer {
public:
    /// Throws std::runtime_error when there is no sound server.
    SoundServer();
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

} // namespace bench
