// Pending rows, each at the place of its hash: a change file may name thousands of rows, and walking a
// list for each would hold up every other client for seconds.
#include "tables/pending_rows.h"

#include <cstring>
#include <new>
#include <utility>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/row_field.h"

namespace kobd
{
namespace
{
size_t pending_count = 0;  // rows of all tables together
size_t pending_bytes = 0;

// The place of that row, or the free place where it belongs.
PendingRow& PlaceOf(const TableDef& table, int32_t index)
{
    // Knuth's multiplicative hash; the table's number keeps the same index of two tables apart.
    const auto number = static_cast<uint32_t>(&table - kTables.data());
    const uint32_t hash = (static_cast<uint32_t>(index) + number * 0x10001u) * 2654435761u;
    const auto is_other = [&table, index](const PendingRow& place)
    { return place.table != nullptr && (place.table != &table || RowIndex(place.row) != index); };
    auto at = static_cast<size_t>(uint64_t{hash} * kPendingRows.size() >> 32);
    while (is_other(kPendingRows[at])) at = (at + 1) % kPendingRows.size();
    return kPendingRows[at];
}

void Append(const TableDef& table, PendingRow* pending)
{
    PendingRows& rows = *table.pending;
    (rows.first == nullptr ? rows.first : rows.last->next) = pending;
    rows.last = pending;
}

// A row as the table's get fills it; nullptr without memory.
char* NewRow(const TableDef& table, int32_t index)
{
    char* row = static_cast<char*>(::operator new(table.row_size, std::nothrow));
    if (row == nullptr) return nullptr;
    memset(row, 0, table.row_size);
    if (table.ops->get != nullptr) table.ops->get(index, row);
    memcpy(row, &index, sizeof index);
    return row;
}
}  // namespace

int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending)
{
    PendingRow& place = PlaceOf(table, index);
    *pending = &place;
    if (place.table != nullptr) return kSuccess;
    if (pending_count == kRowsMax || table.row_size > kRowsBytes - pending_bytes)
    {
        // Some of these rows cannot exist; a file full of them would hold up every other client and
        // take the router's memory.
        LOG_ALWAYS("TableTlvToRows", "the file names more rows than all tables may hold: %zu rows of %zu bytes",
                   kRowsMax, kRowsBytes);
        return kMallocFailed;
    }
    char* row = NewRow(table, index);
    if (row == nullptr) return kMallocFailed;
    place = {&table, row};
    Append(table, &place);
    ++pending_count;
    pending_bytes += table.row_size;
    return kSuccess;
}

void TableRowsRelease()
{
    if (pending_count == 0) return;
    for (const TableDef& table : kTables)
    {
        PendingRow* pending = std::exchange(*table.pending, {}).first;
        while (pending != nullptr)
        {
            ::operator delete(pending->row);
            pending = std::exchange(*pending, {}).next;
        }
    }
    pending_count = 0;
    pending_bytes = 0;
}
}  // namespace kobd
