// Lists of pending rows, and an index over all of them: a change file may name tens of thousands of
// rows, and walking a list for each would hold up every other client for seconds.
#include "tables/pending_rows.h"

#include <array>
#include <cstring>
#include <new>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "tables/row_codec.h"

namespace kobd
{
namespace
{
constexpr size_t kSlots = 8192;  // power of two, so that kRowsMax rows leave a third of them empty
static_assert(kRowsMax < kSlots * 3 / 4);

struct Slot
{
    const TableDef* table = nullptr;  // nullptr: empty
    PendingRow* row = nullptr;
};
std::array<Slot, kSlots> slots;

size_t pending_count = 0;  // nodes in all lists together
size_t pending_bytes = 0;  // of their rows
// The slots of these nodes: to clear all 8192 would cost more than all the rest of a small request.
std::array<uint16_t, kRowsMax> taken;

// The slot of that row, or the empty slot where it belongs.
Slot& SlotOf(const TableDef& table, int32_t index)
{
    // Knuth's multiplicative hash; a table is told from its neighbours by its place.
    const uint32_t place = static_cast<uint32_t>(&table - kTables.data());
    size_t slot = ((static_cast<uint32_t>(index) + place * 0x10001u) * 2654435761u) >> 19;
    static_assert(kSlots == size_t{1} << (32 - 19));
    while (slots[slot].table != nullptr && (slots[slot].table != &table || RowIndex(slots[slot].row->Row()) != index))
        slot = (slot + 1) % kSlots;
    return slots[slot];
}

// The node whose links these are: they lie at its start.
PendingRow* NodeOf(const TableDef& table, PendingRowLinks* links)
{
    return links != table.pending ? reinterpret_cast<PendingRow*>(links) : nullptr;
}

void Append(const TableDef& table, PendingRow* pending)
{
    PendingRowLinks* head = table.pending;
    pending->links = {head, head->previous};
    head->previous->next = &pending->links;
    head->previous = &pending->links;
}

void Unlink(PendingRow* pending)
{
    pending->links.previous->next = pending->links.next;
    pending->links.next->previous = pending->links.previous;
}

// A node with a row of zeros; nullptr without memory.
PendingRow* NewPendingRow(const TableDef& table)
{
    const size_t bytes = sizeof(PendingRow) + table.row_size;
    void* block = ::operator new(bytes, std::nothrow);
    if (block == nullptr) return nullptr;
    memset(block, 0, bytes);
    return new (block) PendingRow;
}
}  // namespace

int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending)
{
    Slot& slot = SlotOf(table, index);
    *pending = slot.row;
    if (slot.table != nullptr) return kSuccess;
    if (pending_count == kRowsMax || table.row_size > kRowsBytes - pending_bytes)
    {
        // Some of these rows cannot exist; a file full of them would hold up every other client and
        // take the router's memory.
        LOG_ALWAYS("TableTlvToRows", "the file names more rows than all tables may hold: %zu rows of %zu bytes",
                   kRowsMax, kRowsBytes);
        return kMallocFailed;
    }
    *pending = NewPendingRow(table);
    if (*pending == nullptr) return kMallocFailed;
    if (table.ops->get != nullptr) table.ops->get(index, (*pending)->Row());
    memcpy((*pending)->Row(), &index, sizeof index);
    Append(table, *pending);
    slot = {&table, *pending};
    pending_bytes += table.row_size;
    taken[pending_count++] = static_cast<uint16_t>(&slot - slots.data());
    return kSuccess;
}

PendingRow* FirstPendingRow(const TableDef& table) { return NodeOf(table, table.pending->next); }

PendingRow* NextPendingRow(const TableDef& table, PendingRow* pending) { return NodeOf(table, pending->links.next); }

void TableRowsRelease()
{
    if (pending_count == 0) return;
    for (size_t i = 0; i < pending_count; ++i) slots[taken[i]] = {};
    pending_count = 0;
    pending_bytes = 0;
    for (const TableDef& table : kTables)
        while (PendingRow* pending = FirstPendingRow(table))
        {
            Unlink(pending);
            ::operator delete(pending);
        }
}
}  // namespace kobd
