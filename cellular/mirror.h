// A cellular list and its image in the router's configuration, which only the command-line tool
// `uci` reads and writes.
//
//   tr069_interface.NAME=<family word>       a section an entry; its option "index" holds the index
//   tr069_cellular.NAME.<field>='<value>'    the fields, and "name" with the family word
//
// An exit status decides nothing: an option that uci does not find reads as the empty text. A command
// that could not be run, or did not end in time, has no answer; a load then fails as a whole. Commands
// that set something are followed by a commit of tr069_interface alone; committing tr069_cellular is left
// to the router.
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

// Replaces the list by what the configuration holds. Ends early, with the entries loaded so far,
// without memory and at a section whose name is not letters and digits. 0; 4 a command had no answer: that
// is logged, and the list is empty and counts as not loaded.
int LoadList(CellularList& list);

// Writes one entry to the configuration.
//   kSaveDelete  removes `section`, commits and loads the list again; the row is not used
//   kSaveAdd     makes a section, puts its name into the row and writes the row
//   kSaveModify  writes the row under `section`
// 0; 1 for any other mode, and nothing is done. A section name that is not letters and digits is
// not written to: that is logged, and the entry then lives in memory alone.
int SaveEntry(CellularList& list, const char* section, char* row, int mode);
}  // namespace kobd
