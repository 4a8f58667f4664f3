// What the client knows of the tables: layouts, limits and operations, made from the same rows as
// the daemon's records.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/catalogue/view.h"

namespace kobd::client
{
using TableEntry = kobd::TableRow;

std::span<const TableEntry> Tables();

// The entry of this name; nullptr when there is none.
const TableEntry* FindTable(std::string_view name);
const ColumnDef* FindColumn(const TableEntry& table, std::string_view name);

// The name of the table or column most like `name`, or the empty text when none is near.
std::string NearestTable(std::string_view name);
std::string NearestColumn(const TableEntry& table, std::string_view name);

// The operations present by name, in the order of `Operation`.
std::vector<std::string> OperationNames(const TableEntry& table);
}  // namespace kobd::client
