// The ring of entries and the bytes of a row.
#include "cellular/list.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace kobd
{
CellularEntry* NewEntry(const CellularFamily& family)
{
    const size_t bytes = sizeof(CellularEntry) + family.row_size;
    void* block = ::operator new(bytes, std::nothrow);
    if (block == nullptr) return nullptr;
    return new (memset(block, 0, bytes)) CellularEntry{};
}

void ReleaseEntry(CellularEntry* entry) { ::operator delete(entry); }

void AppendEntry(CellularList& list, CellularEntry* entry)
{
    entry->next = &list.head;
    entry->previous = list.head.previous;
    list.head.previous->next = entry;
    list.head.previous = entry;
    ++list.count;
}

void UnlinkEntry(CellularList& list, CellularEntry* entry)
{
    entry->previous->next = entry->next;
    entry->next->previous = entry->previous;
    --list.count;
}

CellularEntry* EntryAfter(CellularList& list, CellularEntry* entry)
{
    return entry->next != &list.head ? entry->next : nullptr;
}

CellularEntry* FindEntry(CellularList& list, int32_t index)
{
    CellularEntry* entry = EntryAfter(list, &list.head);
    while (entry != nullptr && RowIndexOf(entry->Row()) != index) entry = EntryAfter(list, entry);
    return entry;
}

int32_t RowIndexOf(const char* row)
{
    int32_t index = 0;
    memcpy(&index, row, sizeof index);
    return index;
}

void SetRowIndex(char* row, int32_t index) { memcpy(row, &index, sizeof index); }

std::string_view TextAt(const char* slot) { return {slot, strnlen(slot, kCellularText - 1)}; }

void SetTextAt(char* slot, std::string_view text)
{
    const size_t length = std::min<size_t>(text.size(), kCellularText - 1);
    memset(slot, 0, kCellularText);
    memcpy(slot, text.data(), length);
}
}  // namespace kobd

void cellularListFree(kobd::CellularList* list)
{
    for (kobd::CellularEntry* entry = list->head.next; entry != &list->head;)
    {
        kobd::CellularEntry* next = entry->next;
        kobd::ReleaseEntry(entry);
        entry = next;
    }
    list->head = {&list->head, &list->head};
    list->count = 0;
    list->highest = 0;
}
