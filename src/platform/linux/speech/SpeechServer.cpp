#include "platform/linux/speech/SpeechServer.h"

#include "platform/SpeechAvailability.h"
#include "platform/linux/speech/ServerAddress.h"
#include "platform/linux/speech/SpeechEngineTexts.h"

namespace tavrin {

SpeechAvailability serverUnavailable(const SpeechServer& server)
{
    if (server.setAddress.trimmed().isEmpty())
        return {false, texts::noServerAddress, {}};
    return {false, texts::refusedServerAddress, shownAddress(QUrl(server.setAddress.trimmed()))};
}

} // namespace tavrin
