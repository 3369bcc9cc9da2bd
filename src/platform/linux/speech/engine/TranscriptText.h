#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

/// Engines answer in words and stretches: joins @p pieces into one text, with single spaces between
/// words and none between Han characters.
[[nodiscard]] QString joinTranscript(const QStringList& pieces);

} // namespace tavrin
