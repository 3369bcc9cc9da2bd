#pragma once

#include "base/Result.h"
#include "platform/linux/audio/PulseConnection.h"

#include <functional>
#include <memory>
#include <span>

namespace tavrin {

/// Captures the default microphone as 16 kHz mono, in blocks of some 20 ms.
///
/// The device is the default source of the moment of open(); the monitor of an output is none.
/// Nothing is handed out before start(); the first block then may begin up to 20 ms before the
/// call. One thread calls open(), start(), pause() and destroys the capture; none of that waits
/// longer than half a second for the sound server. Errors have the domain "TavrinAudio" and a
/// message ready to show.
class PcmCapture {
public:
    static constexpr int sampleRate = 16'000;

    enum ErrorCode {
        NoMicrophone = 11, ///< No server, no microphone, or one that cannot be opened.
        MicrophoneLost = 12, ///< The device or the server went away while capturing.
        Overrun = 13, ///< The handler fell a minute behind.
    };

    /// Both are called on the capture's own thread, blocks in order, each sample once, the end at
    /// most once and after the last block. They may take their time: blocks wait for them. Neither
    /// is called once the capture is destroyed.
    struct Handlers {
        std::function<void(std::span<const qint16> block)> block;
        std::function<void(const Error& error)> failed; ///< Capturing ended by itself.
    };

    [[nodiscard]] static Result<std::unique_ptr<PcmCapture>> open(
        PulseConnection& connection, Handlers handlers);

    /// Ends capturing; returns when everything captured until now has been handled.
    ~PcmCapture();

    PcmCapture(const PcmCapture&) = delete;
    PcmCapture& operator=(const PcmCapture&) = delete;

    /// Starts to capture, or goes on after pause(). The error, or an empty one: then it captures.
    Error start();

    /// What is said from now on is not captured, even when the server does not hear of the pause.
    void pause();

private:
    class Stream;
    class Delivery;

    PcmCapture(PulseConnection& connection, std::shared_ptr<Stream> stream,
        std::shared_ptr<Delivery> delivery);
    bool setCorked(bool corked);

    PulseConnection& m_connection;
    std::shared_ptr<Stream> m_stream;
    std::shared_ptr<Delivery> m_delivery;
};

} // namespace tavrin
