#include "platform/linux/speech/PulseSpeechCapture.h"

#include "base/Log.h"
#include "platform/linux/audio/PcmCapture.h"

namespace tavrin {
namespace {

class PulseSpeechCapture final : public SpeechCapture {
public:
    PulseSpeechCapture(
        std::shared_ptr<PulseConnection> connection, std::unique_ptr<PcmCapture> capture)
        : m_connection(std::move(connection))
        , m_capture(std::move(capture))
    {
    }

private:
    std::shared_ptr<PulseConnection> m_connection; // The capture needs it to the end.
    std::unique_ptr<PcmCapture> m_capture;
};

/// Live text is best effort: it just stops.
void noteEnd(const Error& error)
{
    qCWarning(log::speech, "live capture ended, code %d", error.code);
}

} // namespace

OpenSpeechCapture pulseSpeechCapture(std::shared_ptr<PulseConnection> connection)
{
    return
        [connection = std::move(connection)](std::function<void(std::span<const qint16>)> handler)
            -> Result<std::unique_ptr<SpeechCapture>> {
            auto capture = PcmCapture::open(*connection, {std::move(handler), noteEnd});
            if (!capture)
                return failure(capture.error());
            // A device that is gone by now ends the capture by itself.
            static_cast<void>((*capture)->start());
            return std::make_unique<PulseSpeechCapture>(connection, std::move(*capture));
        };
}

} // namespace tavrin
