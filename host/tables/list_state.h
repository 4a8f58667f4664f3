// The rows of the lists between the database, the factory's rows and memory. Only lists that clients can change are
// written, and of these only those that they did change: such a list then has the rows of the database and none of
// the factory's.
#pragma once

#include <string>
#include <vector>

#include "host/state/history.h"

namespace kobd::host
{
// Gives every list the factory's rows, then those of the database, where it is one. Tables and columns that this build
// does not know, and texts that a column cannot hold, are reported and stay in the database.
void ListsLoad(Database* database);

// Whether rows changed since the last ListsWritten; writes them in the transaction of a commit; and that they were
// written.
bool ListsChanged();
void ListsWrite(Database* database, History* history);
void ListsWritten();

// Adds the names of the tables whose rows changed since then.
void ListsChangedNames(std::vector<std::string>* names);

// To be called when the database is another one: the next commit writes all rows of the lists that clients have
// changed.
void ListsAllChanged();
}  // namespace kobd::host
