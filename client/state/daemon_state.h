// The running daemon's state, whatever KOBD_STATE_DIR says here.
#pragma once

#include <optional>
#include <string>

#include "client/output/outcome.h"

namespace kobd::client
{
// From here on the state folder is that of the running daemon, which is looked for once: where it says, or, when it is
// busy, where the database is that it has open. Without a daemon it is the one that KOBD_STATE_DIR or the user has.
// Returns whether the folder is the daemon's.
bool UseDaemonsState();

// The same for a command that shows the state or changes it without the daemon: says on standard error which folder it
// is where no daemon answered.
void UseStateToShow();

// What became of the last commit.
struct Saving
{
    bool known = true;         // false: the daemon is busy and gave no answer in time
    std::string why_not = "";  // empty when everything is saved, and on a router, which does not tell
};

// Waits at most so many milliseconds for the answer.
Saving LastSaving(int longest_ms);

// "not saved: REASON", or that it is not known; the empty text when all is well.
std::string SavingText(const Saving& saving);

// The objects and tables that were set since the last commit; nothing where the daemon does not tell.
std::optional<Words> NotCommitted();

// Adds to a failure what was set before it and is not committed: it is gone with the next start of the daemon.
void AddNotCommitted(Outcome* outcome);

// Where what was just changed may not be saved, adds the line "WHAT, but not saved: REASON" to the outcome, whose exit
// status becomes 3 and whose data says so.
void AddNotSaved(const Options& options, const std::string& what, Outcome* outcome);
}  // namespace kobd::client
