#include "devcloud/Commands.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Database.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int usageError = 2;

int run(const tavrin::devcloud::Options& options)
{
    using tavrin::devcloud::Command;
    switch (options.command) {
    case Command::Help:
        std::fputs(tavrin::devcloud::helpText().data(), stdout);
        return 0;
    case Command::Version:
        std::puts("tavrin-devcloud " TAVRIN_DEVCLOUD_VERSION);
        return 0;
    case Command::Invite:
        return tavrin::devcloud::makeInvite(options);
    case Command::Account:
        return tavrin::devcloud::makeAccount(options);
    case Command::Sessions:
        return tavrin::devcloud::listSessions(options);
    case Command::Revoke:
        return tavrin::devcloud::revokeSessions(options);
    case Command::Serve:
        break;
    }
    return tavrin::devcloud::serve(options);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto options = tavrin::devcloud::parseCommandLine(arguments);
    if (!options) {
        std::fprintf(stderr, "tavrin-devcloud: %s\n", options.error().c_str());
        return usageError;
    }
    if (!tavrin::devcloud::initializeSecrets()) {
        std::fputs("tavrin-devcloud: the system gives no randomness\n", stderr);
        return 1;
    }
    try {
        return run(*options);
    } catch (const tavrin::devcloud::DatabaseError& error) {
        std::fprintf(stderr, "tavrin-devcloud: %s\n", error.what());
        return 1;
    }
}
