// Start-up and shutdown of the process.
#pragma once

#include "platform/message.h"

namespace kobd
{
// Seeds rand(), which numbers the dump files: two daemons started in one second differ.
void SeedRandom();

// Detaches from the terminal: two forks, a session of its own, folder "/", creation mask 0. The
// parents end with status 0. Descriptors stay as they are.
void Daemonise();

// Asks the kernel for messages of 8192 and queues of 16384 bytes; best effort.
void RaiseMessageLimits();

// Opens those of the descriptors 0 to 2 that were closed at the start on /dev/null, so that no file of
// the daemon's gets the number of a standard stream.
void OpenStandardStreams();

// Builds the name index, registers the handler table and joins the
// bus. Handlers may run before it returns. Always 0; a bus that cannot be joined is logged.
int DictionaryInit(const MsgHandler* handlers);

// Leaves the bus and empties the index. Always 0.
int DictionaryExit();

// Runs the platform's start-up hooks and the dictionary's set-up; requests are served from within.
// Ends before its next step when a signal has come. Always 0.
int KobdInit();

// Leaves the bus, then calls the platform's exit hook. Waits one second at most for a start-up that is
// joining the bus at this moment, and then leaves the bus alone. Once: a second caller waits for the end.
void KobdExit();

// Sleeps until exit_flag is set. A signal ends the process from another thread.
void WaitForExit();
}  // namespace kobd

// 0 while the daemon runs, 1 when it has ended; whoever sets it ends the daemon within five seconds.
extern volatile int exit_flag;
