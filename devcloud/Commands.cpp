#include "devcloud/Commands.h"

#include "devcloud/Housekeeping.h"
#include "devcloud/Service.h"
#include "devcloud/UpdateFile.h"
#include "devcloud/http/HttpServer.h"
#include "devcloud/http/OpenFiles.h"
#include "devcloud/model/ChatCompletions.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/text/Ascii.h"
#include "devcloud/text/Utf8.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <memory>
#include <pthread.h>

namespace tavrin::devcloud {
namespace {

constexpr auto housekeepingInterval = std::chrono::minutes(10);

std::int64_t systemTime()
{
    return std::time(nullptr);
}

int fail(const std::string& reason)
{
    std::fprintf(stderr, "tavrin-devcloud: %s\n", reason.c_str());
    return 1;
}

std::optional<std::string> firstLine(std::istream& stream)
{
    std::string line;
    if (!std::getline(stream, line))
        return std::nullopt;
    if (line.ends_with('\r'))
        line.pop_back();
    return line;
}

std::optional<std::string> firstLineOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return firstLine(stream);
}

/// The model of the options, null when they name none, or what is wrong.
tl::expected<std::unique_ptr<LanguageModel>, std::string> modelFor(const Options& options)
{
    if (options.modelUrl.empty())
        return nullptr;
    const auto address = parseModelUrl(options.modelUrl);
    if (!address)
        return tl::unexpected(address.error());
    ChatCompletionsSettings settings{*address, options.modelName, {}, options.modelTimeout};
    if (options.modelKeyFile) {
        const auto key = firstLineOf(*options.modelKeyFile);
        if (!key)
            return tl::unexpected("cannot read " + options.modelKeyFile->string());
        settings.key = *key;
    }
    return std::make_unique<ChatCompletions>(std::move(settings));
}

tl::expected<UpdateOffer, std::string> updateFor(const Options& options)
{
    return options.updateFile ? readUpdateFile(*options.updateFile) : UpdateOffer();
}

/// The identity of the options, empty when they name none, or what is wrong.
tl::expected<std::optional<TlsIdentity>, std::string> identityFor(const Options& options)
{
    if (!options.tlsCertificate)
        return std::nullopt;
    auto identity = readIdentity(*options.tlsCertificate, *options.tlsKey, systemTime());
    if (!identity)
        return tl::unexpected(identity.error());
    return std::move(*identity);
}

HttpServerSettings serverSettings(const Options& options, std::optional<TlsIdentity> identity)
{
    HttpServerSettings settings;
    settings.host = options.host;
    settings.port = options.port;
    settings.tls = std::move(identity);
    settings.trustedProxies = options.trustedProxies;
    // As many files as connections, and the same again for all else.
    const std::size_t files = allowOpenFiles(2 * settings.limits.connections);
    settings.limits.connections = connectionsWithin(settings.limits.connections, files);
    return settings;
}

/// Keeps the signals that end the service from every thread, so that one of them can wait for them.
sigset_t heldSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

} // namespace

int serve(const Options& options)
{
    auto model = modelFor(options);
    if (!model)
        return fail(model.error());
    const auto update = updateFor(options);
    if (!update)
        return fail(update.error());

    auto identity = identityFor(options);
    if (!identity)
        return fail(identity.error());

    const sigset_t signals = heldSignals();
    Database database(options.data / databaseName);
    removeDead(database, systemTime);
    const Housekeeping housekeeping(database, systemTime, housekeepingInterval);
    Passwords passwords(PasswordCost::interactive());
    TokenLives lives;
    lives.access = options.accessTokenLife;
    lives.refresh = options.refreshTokenLife;
    Service service({database, passwords, Outbox(options.data / "outbox"), model->get(), lives,
        *update, systemTime});
    HttpServer server(service, serverSettings(options, std::move(*identity)));
    if (!server.start())
        return fail("cannot listen on " + options.host + ":" + std::to_string(options.port));
    std::printf("tavrin-devcloud: listening on %s:%d\n", options.host.c_str(), server.port());
    std::fflush(stdout);

    int signal = 0;
    sigwait(&signals, &signal);
    server.stop();
    return 0;
}

int makeInvite(const Options& options)
{
    Database database(options.data / databaseName);
    const std::string code = newInviteCode();
    Transaction transaction(database);
    addInvite(transaction, digest(code), systemTime());
    transaction.commit();
    std::puts(code.c_str());
    return 0;
}

int makeAccount(const Options& options)
{
    const auto email = normalizedEmail(options.email);
    if (!email)
        return fail("not an e-mail address: " + options.email);
    const auto password =
        options.passwordFile ? firstLineOf(*options.passwordFile) : firstLine(std::cin);
    if (!password || countCharacters(*password) < shortestPassword
        || password->size() > longestPassword)
        return fail("the password needs 10 to 1024 characters on one line");
    Passwords passwords(PasswordCost::interactive());
    const auto hash = passwords.hash(*password);
    if (!hash)
        return fail("no memory to hash the password");

    Database database(options.data / databaseName);
    std::optional<Account> account;
    {
        Transaction transaction(database, Transaction::Access::Read);
        account = findAccount(transaction, *email);
    }
    if (account && passwords.matches(account->passwordHash, *password)) {
        std::printf("the password of %s stays as it is\n", email->c_str());
        return 0;
    }
    Transaction transaction(database);
    if (account)
        setPassword(transaction, account->id, *hash);
    else
        addAccount(transaction, *email, *hash, systemTime());
    transaction.commit();
    std::printf("%s %s\n", account ? "new password for" : "account made:", email->c_str());
    return 0;
}

} // namespace tavrin::devcloud
