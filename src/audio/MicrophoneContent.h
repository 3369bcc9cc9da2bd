#pragma once

#include "audio/AudioInputDevices.h"

#include <QList>
#include <QString>

namespace tavrin {

/// What the popup of the preferred microphone shows.
struct MicrophoneContent {
    struct Item {
        QString title;
        QString uid; ///< Empty for the item that follows the system's default.

        friend bool operator==(const Item&, const Item&) = default;
    };

    QList<Item> items;
    qsizetype selected = 0; ///< Index into items.

    friend bool operator==(const MicrophoneContent&, const MicrophoneContent&) = default;
};

/// @p followSystemDefault (its title) first, then one item per device. Selected is the last item
/// whose UID is @p preferredUid, else the first.
[[nodiscard]] MicrophoneContent microphoneContent(const QList<AudioInputDevice>& devices,
    const QString& preferredUid, const QString& followSystemDefault);

} // namespace tavrin
