// A cellular list and its image in the router's configuration, which only the command-line tool
// `uci` reads and writes.
//
//   tr069_interface.NAME=<family word>       a section an entry; its option "index" holds the index
//   tr069_cellular.NAME.<field>='<value>'    the fields, and "name" with the family word
//
// The exit status of a command is ignored: an option that uci does not find reads as the empty text. A
// command that could not be run, or did not end in time, has no answer, and the whole load fails. Commands
// that set something are followed by a commit of tr069_interface; the router commits tr069_cellular itself.
#pragma once

#include "cellular/list.h"

namespace kobd
{
enum SaveMode : int
{
    kSaveDelete = 0,
    kSaveAdd = 1,
    kSaveModify = 2,
};

// Replaces the list by what the configuration holds. Without memory, and at a section whose name is not
// letters and digits, it stops and keeps the entries loaded so far. Returns 0; 4 when a command had no
// answer: that is logged, and the list is then empty and not loaded.
int LoadList(CellularList& list);

// Writes one entry to the configuration.
//   kSaveDelete  removes `section`, commits and loads the list again; the row is not used
//   kSaveAdd     makes a section, puts its name into the row and writes the row
//   kSaveModify  writes the row under `section`
// Returns 0; 1 for any other mode, and nothing is done. A section whose name is not letters and digits is
// not written: that is logged, and the entry is then kept in memory only.
int SaveEntry(CellularList& list, const char* section, char* row, int mode);
}  // namespace kobd
