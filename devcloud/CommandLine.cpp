#include "devcloud/CommandLine.h"

#include "devcloud/http/ClientAddress.h"

#include <charconv>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>

namespace tavrin::devcloud {
namespace {

using Problem = tl::unexpected<std::string>;
using Set = std::function<bool(Options&, const std::string&)>;

constexpr std::int64_t longestLife = std::int64_t{365} * 24 * 3600;
constexpr std::int64_t longestModelTimeout = 85; // Clients give up after 90 seconds without data.

constexpr std::string_view everybody = "--all"; // Stands where an account would.

bool readNumber(std::string_view text, std::int64_t min, std::int64_t max, std::int64_t& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= min
        && number <= max;
}

Set seconds(std::chrono::seconds Options::*member, std::int64_t max)
{
    return [member, max](Options& options, const std::string& text) {
        std::int64_t number = 0;
        const bool valid = readNumber(text, 1, max, number);
        options.*member = std::chrono::seconds(number);
        return valid;
    };
}

template <typename Member>
Set assign(Member Options::*member)
{
    return [member](Options& options, const std::string& text) {
        options.*member = text;
        return !text.empty();
    };
}

/// "HOST:PORT", "[IPV6]:PORT" or "PORT".
bool setListen(Options& options, const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    std::string host = colon == std::string::npos ? options.host : text.substr(0, colon);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    std::int64_t port = 0;
    const std::string digits = colon == std::string::npos ? text : text.substr(colon + 1);
    const bool valid = readNumber(digits, 0, 65535, port) && !host.empty();
    options.host = host;
    options.port = static_cast<int>(port);
    return valid;
}

bool addTrustedProxy(Options& options, const std::string& text)
{
    const auto address = normalizedAddress(text);
    if (address)
        options.trustedProxies.insert(*address);
    return address.has_value();
}

const std::map<std::string, Set, std::less<>>& valueOptions()
{
    static const std::map<std::string, Set, std::less<>> options{
        {"--data", assign(&Options::data)},
        {"--listen", setListen},
        {"--access-ttl", seconds(&Options::accessTokenLife, longestLife)},
        {"--refresh-ttl", seconds(&Options::refreshTokenLife, longestLife)},
        {"--llm-url", assign(&Options::modelUrl)},
        {"--llm-model", assign(&Options::modelName)},
        {"--llm-key-file", assign(&Options::modelKeyFile)},
        {"--llm-timeout", seconds(&Options::modelTimeout, longestModelTimeout)},
        {"--update-file", assign(&Options::updateFile)},
        {"--password-file", assign(&Options::passwordFile)},
        {"--tls-certificate", assign(&Options::tlsCertificate)},
        {"--tls-key", assign(&Options::tlsKey)},
        {"--trusted-proxy", addTrustedProxy},
    };
    return options;
}

bool wantsEmail(Command command)
{
    return command == Command::Account || command == Command::Sessions
        || command == Command::Revoke;
}

std::string_view nameOf(Command command)
{
    switch (command) {
    case Command::Sessions:
        return "sessions";
    case Command::Revoke:
        return "revoke";
    default:
        return "account";
    }
}

bool takeCommand(Options& options, const std::string& word)
{
    static const std::map<std::string, Command, std::less<>> commands{{"invite", Command::Invite},
        {"account", Command::Account}, {"sessions", Command::Sessions},
        {"revoke", Command::Revoke}};
    const auto command = commands.find(word);
    if (command != commands.end())
        options.command = command->second;
    return command != commands.end();
}

/// Takes a word that is no option; false when none fits here.
bool takeWord(Options& options, const std::string& word)
{
    if (options.command == Command::Serve)
        return takeCommand(options, word);
    if (word == everybody) {
        options.allAccounts = options.command == Command::Revoke && options.email.empty();
        return options.allAccounts;
    }
    if (wantsEmail(options.command) && options.email.empty() && !options.allAccounts) {
        options.email = word;
        return !word.empty();
    }
    std::int64_t session = 0;
    if (options.command != Command::Revoke || options.email.empty()
        || !readNumber(word, 1, std::numeric_limits<std::int64_t>::max(), session))
        return false;
    options.sessions.push_back(session);
    return true;
}

/// Takes the option at the beginning of @p arguments with the value behind it.
tl::expected<void, std::string> takeOption(Options& options, std::span<const std::string> arguments)
{
    const std::string& name = arguments.front();
    const auto option = valueOptions().find(name);
    if (option == valueOptions().end())
        return Problem("unknown option: " + name);
    if (arguments.size() == 1)
        return Problem(name + " needs a value");
    if (!option->second(options, arguments[1]))
        return Problem(name + " has an invalid value: " + arguments[1]);
    return {};
}

tl::expected<Options, std::string> checked(Options options)
{
    if (wantsEmail(options.command) && options.email.empty() && !options.allAccounts)
        return Problem(std::string(nameOf(options.command)) + " needs an e-mail address");
    if (options.modelUrl.empty() != options.modelName.empty())
        return Problem("--llm-url and --llm-model belong together");
    if (options.tlsCertificate.has_value() != options.tlsKey.has_value())
        return Problem("--tls-certificate and --tls-key belong together");
    if (options.data.empty())
        options.data = defaultDataFolder();
    if (options.data.empty())
        return Problem("neither --data nor HOME says where the data live");
    return options;
}

} // namespace

std::filesystem::path defaultDataFolder()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): asked before the first thread begins.
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return std::filesystem::path(data) / "tavrin-devcloud";
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return std::filesystem::path(home) / ".local/share/tavrin-devcloud";
    // NOLINTEND(concurrency-mt-unsafe)
    return {};
}

std::string_view helpText()
{
    return R"(usage: tavrin-devcloud [OPTIONS]                 serve until SIGTERM or SIGINT
       tavrin-devcloud [OPTIONS] invite          print a new invite code
       tavrin-devcloud [OPTIONS] account EMAIL   make an account, or set its password, which
                                                 ends its sessions; the password is read from
                                                 standard input
       tavrin-devcloud [OPTIONS] sessions EMAIL  list the sessions of an account
       tavrin-devcloud [OPTIONS] revoke EMAIL [SESSION...]
                                                 end its sessions, or those with these numbers
       tavrin-devcloud [OPTIONS] revoke --all    end the sessions of all accounts

  --data DIR            where the database and the outbox live
                        (default: $XDG_DATA_HOME/tavrin-devcloud)
  --listen HOST:PORT    where to serve (default: 127.0.0.1:8787; port 0 takes any free one)
  --tls-certificate FILE, --tls-key FILE
                        speak HTTPS as whom these say, both in PEM
  --trusted-proxy ADDRESS
                        believe the X-Forwarded-For of this proxy; may be given several times
  --access-ttl SECONDS  life of an access token (default: 3600)
  --refresh-ttl SECONDS life of a refresh token (default: 2592000)
  --llm-url URL         base of a server that answers POST /v1/chat/completions; https, or http
                        on this machine. Without it texts are polished by rules, and translation
                        and chat are refused.
  --llm-model NAME      the model to ask for
  --llm-key-file FILE   holds the key the server wants as a bearer token
  --llm-timeout SECONDS how long an answer may take, at most 85 (default: 60)
  --update-file FILE    JSON object with build, version, downloadUrl and notes to offer to clients
  --password-file FILE  where account reads the password instead
  --help, --version
)";
}

tl::expected<Options, std::string> parseCommandLine(std::span<const std::string> arguments)
{
    Options options;
    for (; !arguments.empty(); arguments = arguments.subspan(1)) {
        const std::string& argument = arguments.front();
        if (argument == "--help" || argument == "--version") {
            options.command = argument == "--help" ? Command::Help : Command::Version;
            return options;
        }
        if (!argument.starts_with("--") || argument == everybody) {
            if (!takeWord(options, argument))
                return Problem("unexpected argument: " + argument);
            continue;
        }
        if (const auto taken = takeOption(options, arguments); !taken)
            return Problem(taken.error());
        arguments = arguments.subspan(1);
    }
    return checked(std::move(options));
}

} // namespace tavrin::devcloud
