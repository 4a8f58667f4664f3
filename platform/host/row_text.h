// A row as lines of a state file, and back:
//
//   Protocol=TCP          a column that is not empty or 0, by its name
//   @path=Device.IP.      the parent path, of layouts without a column for it
//   @260=00ff             bytes that the columns do not say, from this offset on, in hexadecimal
//
// What was written comes back byte for byte.
#pragma once

#include <string>

#include "dictionary/row_layout.h"
#include "platform/host/row_list.h"

namespace kobd::host
{
// Appends the lines of the row. Columns that point to a text outside the row are left out.
void AppendRowLines(const RowLayout& layout, const Row& row, Settings* lines);

// Reads one line into the row. A name that is no column is kept with the row. False when the value
// is none that the column can hold; the row is then unchanged.
bool ReadRowLine(const RowLayout& layout, const std::string& name, const std::string& value, Row* row);

// The column of this name, or nullptr.
const ColumnDef* FindColumn(const RowLayout& layout, std::string_view name);
}  // namespace kobd::host
