#include "fuzz/Require.h"
#include "platform/linux/speech/protocol/RecognizerProtocol.h"

#include <cstddef>
#include <cstdint>

// Whatever the other side of the recogniser's pipes sends: what is found in it is a message that
// would be sent the same way, and what is read from its content keeps to its bounds.

namespace tavrin::fuzz {
namespace {

using namespace recognizer;

void checkRequest(const SpeechRequest& request)
{
    require(request.contextualStrings.size() <= 1'000, "a request has a thousand terms at most");
    require(readRequest(requestContent(request)) == request, "a request arrives as it was read");
}

void checkContent(const QByteArray& content)
{
    if (const auto request = readRequest(content))
        checkRequest(*request);
    if (const auto samples = readSound(content))
        require(soundContent(*samples) == content, "sound arrives as it was read");
    if (const auto text = readText(content))
        require(text->size() <= 200'000, "a text is not longer than it may be");
    if (const auto state = readState(content)) {
        require(state->argument.size() <= 4'096, "an argument is not longer than it may be");
        if (const auto availability = availabilityOf(*state))
            require(stateOf(*availability).text == state->text, "a text is known by its place");
    }
    if (const auto version = readVersion(content))
        require(versionContent(*version) == content, "a version arrives as it was read");
    if (const auto code = readFailure(content))
        require(failureContent(*code) == content, "a code arrives as it was read");
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    tavrin::recognizer::MessageReader whole;
    tavrin::recognizer::MessageReader pieces;
    whole.append(bytes);
    qsizetype taken = 0;
    while (const auto message = whole.next()) {
        const QByteArray again = toBytes(*message);
        require(bytes.sliced(taken, again.size()) == again, "a message is what was sent");
        taken += again.size();
        checkContent(message->content);
    }
    qsizetype found = 0;
    for (const char byte : bytes) {
        pieces.append(QByteArrayView(&byte, 1));
        if (const auto message = pieces.next())
            found += toBytes(*message).size();
    }
    require(found == taken, "however they arrive, the same messages are found");
    require(whole.isBroken() == pieces.isBroken(), "and the same end");
    return 0;
}
