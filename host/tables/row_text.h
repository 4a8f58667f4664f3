// A row as lines of a state file, and back:
//
//   Protocol=TCP          a column that is not empty or 0, by its name
//   @path=Device.IP.      the parent path, of layouts without a column for it
//   @260=00ff             bytes that the columns do not say, from this offset on, in hexadecimal
//
// What was written comes back byte for byte. Rows are cleared behind their texts before they are
// kept: a shorter text leaves the end of the longer one before it in its field, an old password for
// one, which belongs neither into the file nor to anybody who reads the row.
#pragma once

#include <string>

#include "dictionary/row_layout.h"
#include "host/tables/row_list.h"

namespace kobd::host
{
// Clears the bytes that stand in text fields behind the end of their text.
void ClearBehindTexts(const RowLayout& layout, char* row);

// Appends the lines of the row. Columns that point to a text outside the row are left out.
void AppendRowLines(const RowLayout& layout, const Row& row, Settings* lines);

// Reads one line into the row. A name that is no column is kept with the row. False when the value
// is none that the column can hold; the row is then unchanged.
bool ReadRowLine(const RowLayout& layout, const std::string& name, const std::string& value, Row* row);

// The column of this name, or nullptr.
const ColumnDef* FindColumn(const RowLayout& layout, std::string_view name);
}  // namespace kobd::host
