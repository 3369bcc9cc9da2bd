#pragma once

#include "devcloud/CommandLine.h"

namespace tavrin::devcloud {

/// The database, in the folder of the data.
inline constexpr auto databaseName = "devcloud.sqlite";

/// Each carries out one command and returns the exit code of the program.
int serve(const Options& options);
int makeInvite(const Options& options);
int makeAccount(const Options& options);
int listSessions(const Options& options);
int revokeSessions(const Options& options);

} // namespace tavrin::devcloud
