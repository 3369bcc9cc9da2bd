#pragma once

#include <QByteArray>
#include <QString>

namespace tavrin {

/// The name of the file in which IBus tells its address: @p display is that of the X server, as
/// "host:number.screen". Empty when it is none.
[[nodiscard]] QString ibusAddressFileName(const QByteArray& machineId, const QByteArray& display);

/// The address that such a file tells; empty when it tells none.
[[nodiscard]] QByteArray ibusAddressIn(const QByteArray& file);

/// The address of the IBus of this session; empty when none has left one.
[[nodiscard]] QByteArray ibusAddress();

} // namespace tavrin
