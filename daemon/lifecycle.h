// Start-up and shutdown of the process.
#pragma once

namespace kobd
{
// Seeds rand(), which numbers the dump files: two daemons started in one second differ.
void SeedRandom();

// Detaches from the terminal: two forks, a session of its own, folder "/", creation mask 0. The
// parents end with status 0. Descriptors stay as they are.
void Daemonise();

// Asks the kernel for messages of 8192 and queues of 16384 bytes; best effort.
void RaiseMessageLimits();

void KobdSignalSetup();

// Runs the platform's start-up hooks and the dictionary's set-up; requests are served from within.
// Always 0.
int KobdInit();

// Leaves the bus, then tells the platform.
void KobdExit();

// Sleeps until a signal or exit_flag asks for the end; logs the signal.
void WaitForExit();
}  // namespace kobd

extern int exit_flag;
