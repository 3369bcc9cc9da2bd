#pragma once

#include "platform/linux/audio/PulseConnection.h"

#include <QByteArray>

#include <optional>

struct pa_source_info;

/// What recording and the devices both ask the sound server.
namespace tavrin {

/// The names of the default devices; one that there is not is empty.
struct DefaultDevices {
    QByteArray source;
    QByteArray sink;
};

[[nodiscard]] std::optional<DefaultDevices> askDefaultDevices(
    PulseConnection& connection, PulseConnection::Deadline deadline);

/// Whether the source hands out what an output plays: nobody has said that.
[[nodiscard]] bool isMonitor(const pa_source_info& source);

} // namespace tavrin
