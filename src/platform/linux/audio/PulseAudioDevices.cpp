#include "platform/linux/audio/PulseAudioDevices.h"

#include "platform/linux/audio/PulseSources.h"
#include "platform/linux/libraries/Libpulse.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

using namespace libpulse;

namespace {

using Descriptions = QList<PulseAudioDevices::Description>;

struct SinkState {
    quint32 mute = 0;
    pa_cvolume volume{};
};

using tavrin::isMonitor;

bool isMonitor(const pa_sink_info& /*sink*/)
{
    return false;
}

bool isSilent(const pa_source_info& source)
{
    const bool isUnplugged =
        source.active_port && source.active_port->available == PA_PORT_AVAILABLE_NO;
    return source.mute != 0 || isUnplugged || pa_cvolume_max(&source.volume) == PA_VOLUME_MUTED;
}

bool isSilent(const pa_sink_info& /*sink*/)
{
    return false;
}

template <class Info>
void describe(const Info* info, int end, void* data)
{
    auto& question = PulseConnection::Question<Descriptions>::in(data);
    if (!info) {
        if (end < 0)
            question.answer().reset(); // The list is not complete.
        question.finish();
        return;
    }
    question.answer()->append({info->name, QString::fromUtf8(info->description),
        info->sample_spec.channels, isMonitor(*info), isSilent(*info)});
}

std::optional<Descriptions> askSources(
    PulseConnection& connection, PulseConnection::Deadline deadline)
{
    return connection.ask<Descriptions>(
        deadline, [](pa_context* context, PulseConnection::Question<Descriptions>* question) {
            question->answer().emplace();
            return pa_context_get_source_info_list(
                context,
                [](pa_context*, const pa_source_info* info, int end, void* data) {
                    describe(info, end, data);
                },
                question);
        });
}

std::optional<Descriptions> askSinks(
    PulseConnection& connection, PulseConnection::Deadline deadline)
{
    return connection.ask<Descriptions>(
        deadline, [](pa_context* context, PulseConnection::Question<Descriptions>* question) {
            question->answer().emplace();
            return pa_context_get_sink_info_list(
                context,
                [](pa_context*, const pa_sink_info* info, int end, void* data) {
                    describe(info, end, data);
                },
                question);
        });
}

std::optional<SinkState> askSink(PulseConnection& connection, const QByteArray& name)
{
    if (name.isEmpty())
        return std::nullopt; // libpulse would take it for the default sink.
    return connection.ask<SinkState>(PulseConnection::patience(),
        [name](pa_context* context, PulseConnection::Question<SinkState>* question) {
            return pa_context_get_sink_info_by_name(
                context, name.constData(),
                [](pa_context*, const pa_sink_info* info, int, void* data) {
                    auto& asked = PulseConnection::Question<SinkState>::in(data);
                    if (info)
                        asked.answer() = {info->mute != 0 ? 1U : 0U, info->volume};
                    else
                        asked.finish(); // After the one sink, or instead of it.
                },
                question);
        });
}

template <class Start>
PulseConnection::Order change(
    PulseConnection& connection, PulseConnection::Deadline deadline, Start start)
{
    return connection.order(
        deadline, [start](pa_context* context, PulseConnection::Question<bool>* question) {
            return start(
                context,
                [](pa_context*, int success, void* data) {
                    auto& asked = PulseConnection::Question<bool>::in(data);
                    asked.answer() = success != 0;
                    asked.finish();
                },
                question);
        });
}

} // namespace

PulseAudioDevices::PulseAudioDevices(std::shared_ptr<PulseConnection> connection)
    : m_connection(std::move(connection))
{
}

QList<AudioDeviceId> PulseAudioDevices::devices()
{
    return refresh(PulseConnection::patience()) ? m_order : QList<AudioDeviceId>();
}

std::optional<int> PulseAudioDevices::inputChannels(AudioDeviceId device)
{
    const Description* found = find(device);
    if (!found)
        return std::nullopt;
    return m_names.value(device).first == Kind::Source && !found->isMonitor ? found->channels : 0;
}

std::optional<bool> PulseAudioDevices::isInputSilent(AudioDeviceId device)
{
    const Description* found = find(device);
    const bool isInput = found && !found->isMonitor && m_names.value(device).first == Kind::Source;
    return isInput ? std::optional(found->isSilent) : std::nullopt;
}

std::optional<QString> PulseAudioDevices::name(AudioDeviceId device)
{
    const Description* found = find(device);
    return found ? std::optional(found->title) : std::nullopt;
}

std::optional<QString> PulseAudioDevices::uid(AudioDeviceId device)
{
    const Description* found = find(device);
    return found ? std::optional(QString::fromUtf8(found->name)) : std::nullopt;
}

std::optional<AudioDeviceId> PulseAudioDevices::defaultInputDevice()
{
    const auto name = defaultName(Kind::Source, PulseConnection::patience());
    return name ? std::optional(idOf(Kind::Source, *name)) : std::nullopt;
}

bool PulseAudioDevices::setDefaultInputDevice(AudioDeviceId device)
{
    const auto [kind, name] = m_names.value(device, {Kind::Sink, {}});
    if (kind != Kind::Source)
        return false;
    const Deadline deadline = PulseConnection::patience();
    const auto order = change(*m_connection, deadline,
        [name = name](pa_context* context, pa_context_success_cb_t done, void* data) {
            return pa_context_set_default_source(context, name.constData(), done, data);
        });
    // PipeWire says yes before it has switched: a recorder opened now would take the old device.
    if (order == PulseConnection::Order::CarriedOut)
        waitForDefaultSource(name, deadline);
    return order != PulseConnection::Order::Refused;
}

std::optional<AudioDeviceId> PulseAudioDevices::defaultOutputDevice()
{
    const auto name = defaultName(Kind::Sink, PulseConnection::patience());
    return name ? std::optional(idOf(Kind::Sink, *name)) : std::nullopt;
}

std::optional<quint32> PulseAudioDevices::outputMute(AudioDeviceId device)
{
    const auto sink = askSink(*m_connection, sinkName(device));
    return sink ? std::optional(sink->mute) : std::nullopt;
}

bool PulseAudioDevices::isOutputMuteSettable(AudioDeviceId device)
{
    return askSink(*m_connection, sinkName(device)).has_value();
}

bool PulseAudioDevices::setOutputMute(AudioDeviceId device, quint32 mute)
{
    const QByteArray name = sinkName(device);
    return !name.isEmpty()
        && change(*m_connection, PulseConnection::patience(),
               [name, mute](pa_context* context, pa_context_success_cb_t done, void* data) {
                   return pa_context_set_sink_mute_by_name(
                       context, name.constData(), mute != 0 ? 1 : 0, done, data);
               })
        != PulseConnection::Order::Refused;
}

std::optional<float> PulseAudioDevices::outputVolume(AudioDeviceId device)
{
    const auto sink = askSink(*m_connection, sinkName(device));
    if (!sink)
        return std::nullopt;
    return static_cast<float>(pa_cvolume_max(&sink->volume)) / static_cast<float>(PA_VOLUME_NORM);
}

bool PulseAudioDevices::isOutputVolumeSettable(AudioDeviceId device)
{
    return askSink(*m_connection, sinkName(device)).has_value();
}

bool PulseAudioDevices::setOutputVolume(AudioDeviceId device, float volume)
{
    const QByteArray name = sinkName(device);
    const auto sink = askSink(*m_connection, name);
    if (!sink || !(volume >= 0))
        return false;
    const auto wanted = std::min(std::lround(volume * static_cast<float>(PA_VOLUME_NORM)),
        static_cast<long>(PA_VOLUME_UI_MAX));
    pa_cvolume volumes = sink->volume;
    pa_cvolume_scale(&volumes, static_cast<pa_volume_t>(wanted)); // Keeps the balance.
    return change(*m_connection, PulseConnection::patience(),
               [name, volumes](pa_context* context, pa_context_success_cb_t done, void* data) {
                   return pa_context_set_sink_volume_by_name(
                       context, name.constData(), &volumes, done, data);
               })
        != PulseConnection::Order::Refused;
}

AudioDeviceId PulseAudioDevices::idOf(Kind kind, const QByteArray& name)
{
    const std::pair key(kind, name);
    const auto [known, isNew] =
        m_ids.try_emplace(key, static_cast<AudioDeviceId>(m_ids.size() + 1));
    if (isNew)
        m_names.insert(known->second, key);
    return known->second;
}

const PulseAudioDevices::Description* PulseAudioDevices::find(AudioDeviceId device)
{
    if (m_seen != m_connection->changes() && !refresh(PulseConnection::patience()))
        return nullptr;
    const auto found = m_present.constFind(device);
    return found == m_present.constEnd() ? nullptr : &*found;
}

/// Reads the list anew; what is known afterwards is empty when that fails.
bool PulseAudioDevices::refresh(Deadline deadline)
{
    m_order.clear();
    m_present.clear();
    m_seen.reset();
    // Before asking: what changes meanwhile is read again.
    quint64 seen = m_connection->changes();
    auto sources = askSources(*m_connection, deadline);
    auto sinks = sources ? askSinks(*m_connection, deadline) : std::nullopt;
    if (!sources || !sinks)
        return false;
    const auto add = [this](Kind kind, const Descriptions& found) {
        for (const Description& device : found) {
            const AudioDeviceId id = idOf(kind, device.name);
            m_present.insert(id, device);
            if (!device.isMonitor)
                m_order.append(id);
        }
    };
    add(Kind::Source, *sources);
    add(Kind::Sink, *sinks);
    m_seen = seen;
    return true;
}

QByteArray PulseAudioDevices::sinkName(AudioDeviceId device) const
{
    const auto [kind, name] = m_names.value(device, {Kind::Source, {}});
    return kind == Kind::Sink ? name : QByteArray();
}

void PulseAudioDevices::waitForDefaultSource(const QByteArray& name, Deadline deadline)
{
    while (true) {
        const quint64 seen = m_connection->changes();
        if (defaultName(Kind::Source, deadline) == name
            || !m_connection->waitForChange(seen, deadline))
            return;
    }
}

std::optional<QByteArray> PulseAudioDevices::defaultName(Kind kind, Deadline deadline)
{
    const auto defaults = askDefaultDevices(*m_connection, deadline);
    if (!defaults)
        return std::nullopt;
    const QByteArray& name = kind == Kind::Source ? defaults->source : defaults->sink;
    // PipeWire without its session manager names no device, but "@DEFAULT_SOURCE@".
    return name.isEmpty() || name.startsWith('@') ? std::nullopt : std::optional(name);
}

} // namespace tavrin
