// A row as cells of the database, and back. A cell is a field with its text:
//
//   "Protocol"  "TCP"           a column that is not empty or 0
//   "@path"     "Device.IP."    the parent path, of layouts without a column for it
//   ""          bytes           the bytes that the columns do not say; every row has it
//
// What was written comes back byte for byte. Rows are cleared behind their texts before they are
// kept: a shorter text leaves the end of the longer one before it in its field, an old password for
// one, which belongs neither into the database nor to anybody who reads the row.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dictionary/row_layout.h"
#include "host/tables/row_list.h"

namespace kobd::host
{
inline constexpr const char* kOtherBytes = "";

using Cells = std::vector<std::pair<std::string, std::string>>;

// Clears the bytes that stand in text fields behind the end of their text.
void ClearBehindTexts(const RowLayout& layout, char* row);

// The cells of the row, kOtherBytes first. Columns that point to a text outside the row are left out.
Cells CellsOf(const RowLayout& layout, const Row& row);

enum class ReadCell
{
    kRead,
    kUnknown,  // there is no such column
    kCannot,   // the column cannot hold that
};

// Reads a cell that is not kOtherBytes into the row, which is unchanged where it cannot be.
ReadCell ReadCellInto(const RowLayout& layout, std::string_view field, const std::string& value, Row* row);

// Adds the cell kOtherBytes to a row whose other cells were read. False when they are more bytes than the row has.
bool AddOtherBytes(const std::string& bytes, Row* row);

// The column of this name, or nullptr.
const ColumnDef* FindColumn(const RowLayout& layout, std::string_view name);
}  // namespace kobd::host
