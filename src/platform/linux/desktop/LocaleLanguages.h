#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// The languages that the environment variables of a POSIX session ask for.
namespace tavrin {

/// What a variable holds; empty when it is unset.
using Environment = std::function<QString(const QString& name)>;

/// The locales in the user's order, without their encodings ("zh_TW", "sr_RS@latin"): the entries
/// of LANGUAGE and then the locale itself. Empty in the locales C and POSIX.
[[nodiscard]] QStringList preferredLocales(const Environment& environment);

/// @p locale as a BCP 47 tag; Chinese always with its script ("zh_TW" is "zh-Hant-TW").
[[nodiscard]] QString languageTag(const QString& locale);

} // namespace tavrin
