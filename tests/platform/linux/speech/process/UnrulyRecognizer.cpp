#include "platform/linux/recognizer/RecognizerServer.h"
#include "platform/linux/speech/protocol/MessageChannel.h"
#include "support/sound/ScriptedSpeechEngine.h"

#include <csignal>
#include <cstdlib>
#include <string>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

using namespace tavrin;
using namespace tavrin::recognizer;
using namespace std::chrono_literals;

namespace {

/// Two descriptors of its own, as serveRecognizer() closes what it gets.
struct Pipes {
    int input = dup(STDIN_FILENO);
    int output = dup(STDOUT_FILENO);
};

[[noreturn]] void hang()
{
    while (true)
        std::this_thread::sleep_for(1h);
}

void writeAll(int output, const QByteArray& bytes)
{
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t count =
            write(output, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (count <= 0)
            _exit(EXIT_FAILURE);
        at += count;
    }
}

/// Like a good one, up to the first message of this kind; its number then.
quint32 serveUntil(MessageChannel& channel, MessageKind kind)
{
    static_cast<void>(
        channel.send({MessageKind::Hello, 0, 0, versionContent(protocolVersion)}, {}));
    static_cast<void>(channel.send({MessageKind::State, 0, 0, stateContent({true, 0, {}})}, {}));
    while (true) {
        const auto message = channel.receive({});
        if (!message)
            _exit(EXIT_SUCCESS);
        if (message->kind == kind)
            return message->request;
        const MessageKind answer =
            message->kind == MessageKind::Begin ? MessageKind::Begun : MessageKind::Heard;
        const QByteArray content =
            answer == MessageKind::Heard ? textContent(QStringLiteral("heard")) : QByteArray();
        static_cast<void>(
            channel.send({answer, message->request, message->utterance, content}, {}));
    }
}

MessageKind kindOf(const std::string& name)
{
    if (name == "begin")
        return MessageKind::Begin;
    return name == "sound" ? MessageKind::Sound : MessageKind::Finish;
}

/// Old answers without end.
[[noreturn]] void flood(MessageChannel& channel)
{
    while (channel.send({MessageKind::Heard, 0, 0, textContent({})}, {})) { }
    _exit(EXIT_FAILURE);
}

} // namespace

/// A recogniser that goes wrong as it is told: "good", or "WHAT WHEN" where WHAT is "ends",
/// "hangs", "rubbish", "long", "other" or "floods" and WHEN "start", "begin", "sound" or "finish";
/// or "old".
int main(int argc, char** argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string what = argc > 1 ? argv[1] : "";
    const std::string when = argc > 2 ? argv[2] : "";
    const Pipes pipes;
    if (what == "good") {
        testing::ScriptedSpeechEngine engine;
        engine.texts = {QStringLiteral("first"), QStringLiteral("second")};
        return serveRecognizer(engine, pipes.input, pipes.output) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if (what == "old") {
        writeAll(pipes.output, toBytes({MessageKind::Hello, 0, 0, versionContent(0)}));
        hang();
    }
    MessageChannel channel(pipes.input, pipes.output);
    quint32 request = 0;
    if (when != "start")
        request = serveUntil(channel, kindOf(when));
    if (what == "ends")
        return EXIT_FAILURE;
    if (what == "hangs")
        hang();
    if (what == "floods")
        flood(channel);
    if (what == "long") {
        writeAll(pipes.output,
            QByteArray::fromHex("00e1f505"
                                "44")
                + QByteArray(100'000'000, 'x'));
        hang();
    }
    if (what == "other") {
        const MessageKind kind = when == "start" ? MessageKind::Done : MessageKind::Hello;
        static_cast<void>(channel.send({kind, request, 1, versionContent(1)}, {}));
        hang();
    }
    writeAll(pipes.output, "Killed by an uncaught exception\n");
    hang();
}
