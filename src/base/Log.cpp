#include "base/Log.h"

namespace tavrin::log {

Q_LOGGING_CATEGORY(app, "tavrin.app", QtWarningMsg)
Q_LOGGING_CATEGORY(platform, "tavrin.platform", QtWarningMsg)
Q_LOGGING_CATEGORY(audio, "tavrin.audio", QtWarningMsg)
Q_LOGGING_CATEGORY(speech, "tavrin.speech", QtWarningMsg)
Q_LOGGING_CATEGORY(cloud, "tavrin.cloud", QtWarningMsg)
Q_LOGGING_CATEGORY(delivery, "tavrin.delivery", QtWarningMsg)
Q_LOGGING_CATEGORY(history, "tavrin.history", QtWarningMsg)

} // namespace tavrin::log
