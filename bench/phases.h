// The parts of the measurement, in the order in which the table shows them. Each starts daemons of
// its own and ends them; each expects the namespaces of tests/namespaces.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kobd::bench
{
// Stores values of that many objects, at most 1488, and rows of a table in a folder that a daemon has used.
void FillState(const std::string& folder, size_t values, int64_t rows);

// With the state in memory, where no commit waits for a disk.
void RoundTrips();

// Commits in `disk_folder`, a state folder on a disk, where fsync costs something.
void Commits(const std::string& disk_folder);

// A get with and without monitors beside it.
void Taps();

// From the start of the process to the first answer.
void StartUp();

// More names, rows and clients.
void Growth();

// Nanoseconds a lookup, over all names.
void Lookups();
}  // namespace kobd::bench
