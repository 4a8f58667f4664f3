// What the client knows of the tables: layouts, limits and operations, made from the same rows as
// the daemon's records.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/row_layout.h"

namespace kobd::client
{
// The operations that a table may have, one bit each, in the order in which they are shown.
enum Operation : unsigned
{
    kAdd = 1u << 0,
    kDel = 1u << 1,
    kGet = 1u << 2,
    kSet = 1u << 3,
    kSetParentPath = 1u << 4,
    kNext = 1u << 5,
    kValidate = 1u << 6,
};

struct TableEntry
{
    const char* name;
    RowLayout layout;
    uint32_t max_rows;
    const char* list_of;    // the table whose rows these are; its own name, or another table's
    unsigned operations;    // Operation bits
    const char* validator;  // name of the check of a row, empty: none

    bool Has(Operation operation) const { return (operations & operation) != 0; }
};

std::span<const TableEntry> Tables();

// The entry of this name; nullptr when there is none.
const TableEntry* FindTable(std::string_view name);
const ColumnDef* FindColumn(const TableEntry& table, std::string_view name);

// The name of the table or column most like `name`, or the empty text when none is near.
std::string NearestTable(std::string_view name);
std::string NearestColumn(const TableEntry& table, std::string_view name);

// The operations present by name, in the order of Operation.
std::vector<std::string> OperationNames(const TableEntry& table);
}  // namespace kobd::client
