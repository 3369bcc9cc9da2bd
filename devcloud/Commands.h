#pragma once

#include "devcloud/CommandLine.h"

namespace tavrin::devcloud {

/// Each carries out one command and returns the exit code of the program.
int serve(const Options& options);
int makeInvite(const Options& options);
int makeAccount(const Options& options);

} // namespace tavrin::devcloud
