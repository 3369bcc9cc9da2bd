#pragma once

#include <chrono>
#include <cstddef>
#include <httplib.h>
#include <string>

namespace tavrin::devcloud {

/// What one request may cost before it is answered.
struct RequestLimits {
    std::chrono::milliseconds wholeRequest{std::chrono::seconds(20)}; ///< From its first byte.
    std::chrono::milliseconds wholeAnswer{std::chrono::seconds(20)};
    std::size_t headBytes = std::size_t{32} * 1024;
};

/// A connection as the HTTP library sees it, with bounds the library does not know: a time for the
/// whole request however slowly it drips, and a size for its head.
class ClientStream : public httplib::Stream {
public:
    /// @param socket stays the caller's.
    ClientStream(socket_t socket, const RequestLimits& limits);

    /// Starts the bounds of the next request.
    void beginRequest();
    /// Whether bytes or the end of the connection arrive within @p wait.
    bool waitForBytes(std::chrono::milliseconds wait);

    /// Whether a read failed: the connection ended, took too long or sent too long a head.
    [[nodiscard]] bool isBroken() const { return m_broken; }

    /// Says that nothing more will be sent and reads what is on its way, so that the other side
    /// gets to see the answer.
    void finish();

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char* bytes, size_t size) override;
    ssize_t write(const char* bytes, size_t size) override;
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;

    [[nodiscard]] socket_t socket() const override { return m_socket; }

private:
    using Clock = std::chrono::steady_clock;

    bool waitUntil(short events, Clock::time_point deadline) const;
    ssize_t receive();
    bool countHeadByte(char byte);

    const socket_t m_socket;
    const RequestLimits m_limits;
    Clock::time_point m_readDeadline;
    std::size_t m_headBytes = 0;
    int m_lineBreaks = 0; ///< In a row; two end the head.
    bool m_headEnded = false;
    bool m_broken = false;
    std::string m_buffer;
    std::size_t m_bufferAt = 0;
};

} // namespace tavrin::devcloud
