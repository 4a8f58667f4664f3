// The files behind uci, in folder "uci" of the state folder:
//
//   CONFIG           what was committed
//   CONFIG.staged    the whole configuration with what was set since, until it is committed
//   .lock            held by the one command that runs
//
// A file is replaced whole, so a command that is killed leaves the old or the new one.
#pragma once

#include <string>

#include "host/uci/settings.h"

namespace kobd::host
{
// Makes the folder and waits until no other command runs, ten seconds at most. Held until the
// process ends. False, with a line on standard error, when it cannot be had.
bool LockUci();

enum class UciLoad
{
    kLoaded,
    kMissing,   // no such configuration yet: empty settings
    kUnusable,  // it is there and cannot be read; standard error says why
};

// Staged settings, else committed ones. A damaged file is kept aside and reported on standard
// error and in the journal; the next one in that order then serves.
UciLoad LoadUci(const std::string& config, Settings* settings);

// Stages the settings. False, with a line on standard error, when they could not be written.
bool StageUci(const std::string& config, const Settings& settings);

// Makes what is staged the committed configuration. False, with a line on standard error, when
// there is no such configuration or it could not be written; it then stays staged.
bool CommitUci(const std::string& config);

// Commits every configuration that has something staged.
bool CommitAllUci();
}  // namespace kobd::host
