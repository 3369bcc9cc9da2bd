#pragma once

#include <QByteArrayView>
#include <QString>

namespace tavrin {

/// The text of the JSON string that has @p written between its quotation marks. The string is
/// well-formed, or the text is what can be made of it.
[[nodiscard]] QString textFromJson(QByteArrayView written);

} // namespace tavrin
