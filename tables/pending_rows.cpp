// Lists of pending rows.
#include "tables/pending_rows.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "daemon/log.h"
#include "daemon/result.h"
#include "tables/row_codec.h"

namespace kobd
{
namespace
{
size_t pending_count = 0;  // nodes in all lists together

// The node whose links these are: they lie at its start.
PendingRow* NodeOf(const TableDef& table, PendingRowLinks* links)
{
    return links != table.pending ? reinterpret_cast<PendingRow*>(links) : nullptr;
}

PendingRow* Find(const TableDef& table, int32_t index)
{
    for (PendingRow* pending = FirstPendingRow(table); pending != nullptr; pending = NextPendingRow(table, pending))
        if (RowIndex(pending->Row()) == index) return pending;
    return nullptr;
}

void Append(const TableDef& table, PendingRow* pending)
{
    PendingRowLinks* head = table.pending;
    pending->links = {head, head->previous};
    head->previous->next = &pending->links;
    head->previous = &pending->links;
    ++pending_count;
}

void Unlink(PendingRow* pending)
{
    pending->links.previous->next = pending->links.next;
    pending->links.next->previous = pending->links.previous;
    --pending_count;
}
}  // namespace

int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending)
{
    *pending = Find(table, index);
    if (*pending != nullptr) return kSuccess;
    if (pending_count == kRowsMax)
    {
        // Some of these rows cannot exist; a file full of them would hold up every other client and
        // take the router's memory.
        LOG_ALWAYS("TableTlvToRows", "the file names more than %zu rows", kRowsMax);
        return kInvalidArgument;
    }
    void* block = calloc(1, sizeof(PendingRow) + table.row_size);
    if (block == nullptr) return kMallocFailed;
    *pending = new (block) PendingRow;
    if (table.ops->get != nullptr) table.ops->get(index, (*pending)->Row());
    memcpy((*pending)->Row(), &index, sizeof index);
    Append(table, *pending);
    return kSuccess;
}

PendingRow* FirstPendingRow(const TableDef& table) { return NodeOf(table, table.pending->next); }

PendingRow* NextPendingRow(const TableDef& table, PendingRow* pending) { return NodeOf(table, pending->links.next); }

void TableRowsRelease()
{
    for (const TableDef& table : kTables)
    {
        if (pending_count == 0) return;
        while (PendingRow* pending = FirstPendingRow(table))
        {
            Unlink(pending);
            free(pending);
        }
    }
}
}  // namespace kobd
