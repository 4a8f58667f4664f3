// How a signal ends the daemon. The handler only notes the signal and wakes a thread that does the rest;
// it therefore does not matter what the interrupted thread holds, or whether the main thread hangs in a
// hook of the platform.
#pragma once

namespace kobd
{
// Installs sig_handler for SIGUSR1, SIGUSR2, SIGTERM, SIGQUIT, SIGINT and SIGBUS, ignores SIGPIPE, SIGHUP
// and SIGXFSZ, and starts the threads that end the process. What the parent blocked is unblocked.
// Call it after the last fork of the start.
void KobdSignalSetup();

// True from the first signal on. The start-up asks before each of its steps.
bool ShutdownBegun();

// Waits for the end of the process, which another thread is about to bring.
[[noreturn]] void AwaitEnd();
}  // namespace kobd
