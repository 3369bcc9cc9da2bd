#include "platform/linux/audio/PcmCapture.h"

#include "platform/linux/audio/AudioErrors.h"
#include "platform/linux/audio/PulseSources.h"
#include "platform/linux/audio/RecordingTexts.h"
#include "platform/linux/libraries/Libpulse.h"

#include <QByteArray>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace tavrin {

using namespace libpulse;

namespace {

constexpr std::uint32_t blockBytes = PcmCapture::sampleRate / 50 * sizeof(qint16); // 20 ms
constexpr std::size_t longestBacklog = std::size_t{60} * PcmCapture::sampleRate; // A minute.

Error error(PcmCapture::ErrorCode code)
{
    switch (code) {
    case PcmCapture::NoMicrophone:
        return audioError(code, texts::noMicrophone);
    case PcmCapture::MicrophoneLost:
        return audioError(code, texts::microphoneLost);
    case PcmCapture::Overrun:
        return audioError(code, texts::captureOverrun);
    }
    return {};
}

std::optional<bool> askWhetherMonitor(
    PulseConnection& connection, const QByteArray& source, PulseConnection::Deadline deadline)
{
    using Question = PulseConnection::Question<bool>;
    return connection.ask<bool>(deadline, [source](pa_context* context, Question* question) {
        return pa_context_get_source_info_by_name(
            context, source.constData(),
            [](pa_context*, const pa_source_info* info, int, void* data) {
                auto& asked = Question::in(data);
                if (info)
                    asked.answer() = isMonitor(*info);
                else
                    asked.finish(); // After the one source, or instead of it.
            },
            question);
    });
}

/// A server without a microphone offers what its outputs play.
std::optional<QByteArray> defaultMicrophone(
    PulseConnection& connection, PulseConnection::Deadline deadline)
{
    const auto devices = askDefaultDevices(connection, deadline);
    if (!devices || devices->source.isEmpty())
        return std::nullopt;
    const bool isMicrophone = askWhetherMonitor(connection, devices->source, deadline) == false;
    return isMicrophone ? std::optional(devices->source) : std::nullopt;
}

} // namespace

/// Carries blocks from the connection's thread to the handlers, on a thread of its own.
class PcmCapture::Delivery {
public:
    explicit Delivery(Handlers handlers)
        : m_handlers(std::move(handlers))
        , m_thread([this] { run(); })
    {
    }

    ~Delivery() { finish(); }

    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    /// Silence of @p count samples when @p samples is null: the server lost that much.
    void append(const qint16* samples, std::size_t count)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_ended)
                return;
            if (m_backlog.size() + count > longestBacklog) {
                m_ended = true;
                m_error = error(Overrun);
            } else if (samples) {
                m_backlog.insert(m_backlog.end(), samples, samples + count);
            } else {
                m_backlog.resize(m_backlog.size() + count);
            }
        }
        m_wake.notify_one();
    }

    /// Takes no more; what is there is still handled, then @p reason unless it is empty.
    void end(const Error& reason)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_ended)
                return;
            m_ended = true;
            m_error = reason;
        }
        m_wake.notify_one();
    }

    /// Waits until everything has been handled. No handler runs afterwards.
    void finish()
    {
        end({});
        if (m_thread.joinable())
            m_thread.join();
    }

private:
    void run()
    {
        std::vector<qint16> block;
        std::unique_lock lock(m_mutex);
        while (true) {
            m_wake.wait(lock, [this] { return m_ended || !m_backlog.empty(); });
            if (m_backlog.empty())
                break;
            block.clear();
            block.swap(m_backlog);
            lock.unlock();
            m_handlers.block(block);
            lock.lock();
        }
        const Error reason = m_error;
        lock.unlock();
        if (reason != Error{})
            m_handlers.failed(reason);
    }

    Handlers m_handlers;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::vector<qint16> m_backlog;
    bool m_ended = false;
    Error m_error;
    std::thread m_thread; // Last: it uses all of the above.
};

/// The stream of libpulse. Used on the connection's thread only.
class PcmCapture::Stream {
public:
    using Opening = PulseConnection::Question<bool>;

    explicit Stream(std::shared_ptr<Delivery> delivery)
        : m_delivery(std::move(delivery))
    {
    }

    /// False when it cannot even begin; else @p opening is finished when the stream is ready.
    bool open(pa_context* context, const QByteArray& device, Opening* opening);

    /// Takes what is there and lets the device go.
    void close();

    /// Throws away what comes until it is wanted again.
    void discard() { m_isWanted = false; }

    pa_operation* cork(bool corked, pa_stream_success_cb_t done, void* data)
    {
        m_isWanted = m_isWanted || !corked;
        return m_stream ? pa_stream_cork(m_stream, corked ? 1 : 0, done, data) : nullptr;
    }

private:
    void stateChanged();
    void read();

    static void disconnectWhenReady(pa_stream* stream, void*)
    {
        if (pa_stream_get_state(stream) == PA_STREAM_READY)
            pa_stream_disconnect(stream);
    }

    std::shared_ptr<Delivery> m_delivery;
    pa_stream* m_stream = nullptr;
    Opening* m_opening = nullptr; ///< Until the stream is ready or has failed.
    bool m_isWanted = false; ///< Else what comes is thrown away, as before the first start.
};

bool PcmCapture::Stream::open(pa_context* context, const QByteArray& device, Opening* opening)
{
    constexpr pa_sample_spec format{PA_SAMPLE_S16NE, sampleRate, 1};
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    constexpr pa_buffer_attr buffers{automatic, automatic, automatic, automatic, blockBytes};
    // It runs at once: a device that only starts when it is wanted would miss the first syllable.
    // Not moved: without its microphone a server would go on with what an output plays.
    constexpr auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);

    m_stream = pa_stream_new(context, "Dictation", &format, nullptr);
    if (!m_stream)
        return false;
    m_opening = opening;
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* self) { static_cast<Stream*>(self)->stateChanged(); }, this);
    pa_stream_set_read_callback(
        m_stream, [](pa_stream*, std::size_t, void* self) { static_cast<Stream*>(self)->read(); },
        this);
    return pa_stream_connect_record(m_stream, device.constData(), &buffers, flags) == 0;
}

void PcmCapture::Stream::close()
{
    if (!m_stream)
        return;
    if (Opening* opening = std::exchange(m_opening, nullptr))
        opening->finish();
    pa_stream_set_read_callback(m_stream, nullptr, nullptr);
    if (pa_stream_get_state(m_stream) == PA_STREAM_READY)
        read();
    // A stream still being made cannot be ended yet; nobody is left to end it then but itself.
    pa_stream_set_state_callback(m_stream, disconnectWhenReady, nullptr);
    disconnectWhenReady(m_stream, nullptr);
    pa_stream_unref(std::exchange(m_stream, nullptr));
}

void PcmCapture::Stream::stateChanged()
{
    const pa_stream_state_t state = pa_stream_get_state(m_stream);
    if (state == PA_STREAM_CREATING)
        return;
    const bool ready = state == PA_STREAM_READY;
    if (Opening* opening = std::exchange(m_opening, nullptr)) {
        opening->answer() = ready;
        opening->finish();
    } else if (!ready) {
        m_delivery->end(error(MicrophoneLost));
    }
}

void PcmCapture::Stream::read()
{
    while (pa_stream_readable_size(m_stream) > 0) {
        const void* data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(m_stream, &data, &bytes) < 0 || bytes == 0)
            return;
        if (m_isWanted)
            m_delivery->append(static_cast<const qint16*>(data), bytes / sizeof(qint16));
        pa_stream_drop(m_stream);
    }
}

PcmCapture::PcmCapture(
    PulseConnection& connection, std::shared_ptr<Stream> stream, std::shared_ptr<Delivery> delivery)
    : m_connection(connection)
    , m_stream(std::move(stream))
    , m_delivery(std::move(delivery))
{
}

Result<std::unique_ptr<PcmCapture>> PcmCapture::open(PulseConnection& connection, Handlers handlers)
{
    const auto deadline = PulseConnection::patience();
    const auto device = defaultMicrophone(connection, deadline);
    if (!device)
        return failure(error(NoMicrophone));

    auto delivery = std::make_shared<Delivery>(std::move(handlers));
    auto stream = std::make_shared<Stream>(delivery);
    // From here on the capture closes the stream, opened or not.
    std::unique_ptr<PcmCapture> capture(new PcmCapture(connection, stream, std::move(delivery)));
    const auto opened = connection.ask<bool>(
        deadline, [stream, device = *device](pa_context* context, Stream::Opening* opening) {
            return stream->open(context, device, opening);
        });
    if (!opened.value_or(false))
        return failure(error(NoMicrophone));
    return capture;
}

PcmCapture::~PcmCapture()
{
    std::promise<void> closed;
    m_connection.post([&] {
        m_stream->close();
        closed.set_value();
    });
    closed.get_future().wait(); // The connection's thread never waits for the server.
    m_delivery->finish();
}

Error PcmCapture::start()
{
    return setCorked(false) ? Error{} : error(MicrophoneLost);
}

void PcmCapture::pause()
{
    // What was said before is still on its way while the server answers.
    if (!setCorked(true))
        m_connection.post([stream = m_stream] { stream->discard(); });
}

bool PcmCapture::setCorked(bool corked)
{
    return m_connection.order(PulseConnection::patience(),
               [stream = m_stream, corked](pa_context*, PulseConnection::Question<bool>* question) {
                   return stream->cork(
                       corked,
                       [](pa_stream*, int success, void* data) {
                           auto& asked = PulseConnection::Question<bool>::in(data);
                           asked.answer() = success != 0;
                           asked.finish();
                       },
                       question);
               })
        == PulseConnection::Order::CarriedOut;
}

} // namespace tavrin
