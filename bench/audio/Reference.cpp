#include "Reference.h"

#include <algorithm>
#include <chrono>

namespace bench {

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

Reference::Reference()
{
    auto capture = tavrin::PcmCapture::open(m_connection,
        {[this](std::span<const qint16> block) { add(block); }, [](const tavrin::Error&) {}});
    if (capture && (*capture)->start() == tavrin::Error{})
        m_capture = std::move(*capture);
}

Reference::Heard Reference::heard() const
{
    const std::lock_guard lock(m_mutex);
    return m_heard;
}

void Reference::add(std::span<const qint16> block)
{
    const double arrived = now();
    const std::lock_guard lock(m_mutex);
    m_heard.samples.insert(m_heard.samples.end(), block.begin(), block.end());
    const double since =
        arrived - static_cast<double>(m_heard.samples.size()) / tavrin::PcmCapture::sampleRate;
    // The block that was delayed least tells best.
    m_heard.since = m_heard.since == 0 ? since : std::min(m_heard.since, since);
}

} // namespace bench
