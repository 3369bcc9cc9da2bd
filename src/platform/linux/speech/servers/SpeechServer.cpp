#include "platform/linux/speech/servers/SpeechServer.h"

#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/servers/ServerAddress.h"
#include "platform/speech/SpeechAvailability.h"

namespace tavrin {

SpeechAvailability serverUnavailable(const SpeechServer& server)
{
    if (server.setAddress.trimmed().isEmpty())
        return {false, texts::noServerAddress, {}};
    return {false, texts::refusedServerAddress, shownAddress(QUrl(server.setAddress.trimmed()))};
}

} // namespace tavrin
