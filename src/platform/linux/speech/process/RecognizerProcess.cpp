#include "platform/linux/speech/process/RecognizerProcess.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tavrin::recognizer {
namespace {

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};

std::optional<Pipe> createPipe()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    return Pipe{ends[0], ends[1]};
}

/// What a started program gets of this one: two pipes, the errors' output, no signal settings.
class SpawnSettings {
public:
    SpawnSettings(const Pipe& toIt, const Pipe& fromIt)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, toIt.readEnd, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, fromIt.writeEnd, STDOUT_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }

    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &m_actions; }

    [[nodiscard]] const posix_spawnattr_t* attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// The number of the new process; empty when it could not be started.
std::optional<pid_t> spawn(const RecognizerCommand& command, const Pipe& toIt, const Pipe& fromIt)
{
    std::vector<QByteArray> words;
    words.reserve(static_cast<std::size_t>(command.arguments.size()) + 1);
    words.push_back(QFile::encodeName(command.program));
    for (const QString& argument : command.arguments)
        words.push_back(QFile::encodeName(argument));
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const SpawnSettings settings(toIt, fromIt);
    pid_t number = 0;
    if (posix_spawn(&number, words.front().constData(), settings.actions(), settings.attributes(),
            arguments.data(), environ)
        != 0)
        return std::nullopt;
    return number;
}

} // namespace

tl::expected<std::unique_ptr<RecognizerProcess>, ChannelFailure> RecognizerProcess::start(
    const RecognizerCommand& command, const Waiting& waiting)
{
    const std::optional<Pipe> toIt = createPipe();
    if (!toIt)
        return tl::unexpected(ChannelFailure::Ended);
    const std::optional<Pipe> fromIt = createPipe();
    std::optional<pid_t> number;
    if (fromIt) {
        number = spawn(command, *toIt, *fromIt);
        close(fromIt->writeEnd);
    }
    close(toIt->readEnd);
    if (!number) {
        close(toIt->writeEnd);
        if (fromIt)
            close(fromIt->readEnd);
        return tl::unexpected(ChannelFailure::Ended);
    }
    std::unique_ptr<RecognizerProcess> process(
        new RecognizerProcess(*number, fromIt->readEnd, toIt->writeEnd));
    if (const auto greeted = process->greet(waiting); !greeted)
        return tl::unexpected(greeted.error());
    return process;
}

RecognizerProcess::RecognizerProcess(pid_t number, int input, int output)
    : m_number(number)
    , m_channel(input, output)
{
}

RecognizerProcess::~RecognizerProcess()
{
    kill(m_number, SIGKILL);
    while (waitpid(m_number, nullptr, 0) < 0 && errno == EINTR) { }
}

tl::expected<void, ChannelFailure> RecognizerProcess::greet(const Waiting& waiting)
{
    const auto hello = receive(waiting);
    if (!hello)
        return tl::unexpected(hello.error());
    if (hello->kind != MessageKind::Hello || readVersion(hello->content) != protocolVersion)
        return tl::unexpected(ChannelFailure::Malformed);
    const auto state = receive(waiting);
    if (!state)
        return tl::unexpected(state.error());
    const std::optional<EngineState> read = readState(state->content);
    if (state->kind != MessageKind::State || !read)
        return tl::unexpected(ChannelFailure::Malformed);
    m_state = *read;
    return {};
}

tl::expected<Message, ChannelFailure> RecognizerProcess::ask(
    Message request, const Waiting& waiting)
{
    if (m_isLost)
        return tl::unexpected(ChannelFailure::Ended);
    request.request = ++m_requests;
    if (const auto sent = send(request, waiting); !sent)
        return tl::unexpected(sent.error());
    while (true) {
        auto answer = receive(waiting);
        if (!answer || answer->request == request.request)
            return answer;
        // Else of a request that was stopped. None comes twice, but for one that is up to no good.
        if (waiting.deadline && std::chrono::steady_clock::now() >= *waiting.deadline) {
            m_isLost = true;
            return tl::unexpected(ChannelFailure::TimedOut);
        }
    }
}

void RecognizerProcess::tell(Message message)
{
    if (m_isLost)
        return;
    message.request = 0;
    static_cast<void>(send(message, Waiting::atMost(Seconds{0})));
}

tl::expected<void, ChannelFailure> RecognizerProcess::send(
    const Message& message, const Waiting& waiting)
{
    const auto sent = m_channel.send(message, waiting);
    if (!sent)
        m_isLost = true; // Half of a message may be out.
    return sent;
}

tl::expected<Message, ChannelFailure> RecognizerProcess::receive(const Waiting& waiting)
{
    auto message = m_channel.receive(waiting);
    if (!message && message.error() != ChannelFailure::Stopped)
        m_isLost = true;
    return message;
}

} // namespace tavrin::recognizer
