#pragma once

#include <QLoggingCategory>

/// Log categories, one per module that has something to tell, all under "tavrin."; written to
/// stderr. Warnings and worse are shown by default, `--verbose` shows the rest. A log line never
/// holds what the user said, typed or copied, nor a token, password, key or e-mail address: name
/// the event, a count, a code.
namespace tavrin::log {

Q_DECLARE_LOGGING_CATEGORY(app)
Q_DECLARE_LOGGING_CATEGORY(platform)
Q_DECLARE_LOGGING_CATEGORY(audio)
Q_DECLARE_LOGGING_CATEGORY(speech)
Q_DECLARE_LOGGING_CATEGORY(cloud)
Q_DECLARE_LOGGING_CATEGORY(delivery)
Q_DECLARE_LOGGING_CATEGORY(history)

} // namespace tavrin::log
