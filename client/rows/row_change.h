// Changes of rows: read from words, checked against the columns, sent to the daemon.
#pragma once

#include <vector>

#include "client/rows/row_address.h"

namespace kobd::client
{
struct RowChange
{
    RowAddress row;
    Assignments values = {};  // of columns
};

using RowChanges = std::vector<RowChange>;

// Reads groups of TABLE INDEX [COLUMN=VALUE...]. A group begins at a word that names a table.
Failure ReadChanges(const Words& words, RowChanges* changes);

// Reads a word COLUMN=VALUE.
Failure ReadColumnValue(const std::string& word, Assignments* values);

// Fails where the row has no such column, or a column does not take its value.
Failure CheckColumns(const RowChange& change);

// The rows that the changes name.
RowAddresses RowsOf(const RowChanges& changes);

// Has the daemon apply the changes, together. Neither they nor a signal leave a change file behind.
Failure SendChanges(const Options& options, const RowChanges& changes);

// Adds an empty row to the table, below the options' parent where there is one.
Failure AddRow(const Options& options, const TableEntry& table, int32_t* index);

Failure DeleteRow(const Options& options, const RowAddress& row);
}  // namespace kobd::client
