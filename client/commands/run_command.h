// Finding and running the command that words name: for main, and for each line of a batch.
#pragma once

#include "client/commands/commands.h"

namespace kobd::client
{
// Runs the command of a command line, whose options are added to `defaults`. The exit status.
int RunCommand(const Words& command_line, const Options& defaults);
}  // namespace kobd::client
