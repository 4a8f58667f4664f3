// The running daemon's state, whatever KOBD_STATE_DIR says here.
#pragma once

#include <string>

#include "client/output/outcome.h"

namespace kobd::client
{
// From here on the state folder is that of the running daemon, which is asked once. Without a daemon it is the one that
// KOBD_STATE_DIR or the user has. Returns whether a daemon answered.
bool UseDaemonsState();

// The same for a command that shows the state or changes it without the daemon: says on standard error which folder it
// is where no daemon answered.
void UseStateToShow();

// Why the last commit could not be saved; the empty text when everything is saved, and where nobody tells.
std::string WhyNotSaved();

// The objects and tables that were set since the last commit; none where nobody tells.
Words NotCommitted();

// Where what was just changed could not be saved, adds the line "WHAT, but not saved: REASON" to the outcome, whose
// exit status becomes 3 and whose data says so.
void AddNotSaved(const std::string& what, Outcome* outcome);
}  // namespace kobd::client
