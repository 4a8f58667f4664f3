// A cellular list in memory: a ring of entries, each a heap block that holds its links and its row. The
// list owns its entries. Nothing here is locked: all calls come from the thread that handles requests.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "cellular/family.h"

namespace kobd
{
inline constexpr int32_t kCellularMax = 64;  // entries that adds and sets allow; a load takes more

// The row lies right behind the links.
struct CellularEntry
{
    CellularEntry* next;
    CellularEntry* previous;

    char* Row() { return reinterpret_cast<char*>(this + 1); }
};

struct CellularList
{
    const CellularFamily& family;
    CellularEntry head = {&head, &head};  // links alone; both point here when the list is empty
    int32_t count = 0;
    int32_t highest = 0;  // largest index in use, 0 for an empty list
    bool loaded = false;  // set by the first load that succeeded
    // The request in which a load failed. The load is tried again in the next request only: within the same
    // one, a row that could not be read would be written back as zeros.
    std::optional<uint32_t> failed = std::nullopt;
};

// Makes an entry of zeros that is in no list yet; nullptr without memory. ReleaseEntry frees it.
CellularEntry* NewEntry(const CellularFamily& family);
void ReleaseEntry(CellularEntry* entry);

void AppendEntry(CellularList& list, CellularEntry* entry);
void UnlinkEntry(CellularList& list, CellularEntry* entry);

// The first entry with that index; nullptr without one.
CellularEntry* FindEntry(CellularList& list, int32_t index);

// Returns the entry after `entry`, the first one after the head; nullptr at the end.
CellularEntry* EntryAfter(CellularList& list, CellularEntry* entry);

int32_t RowIndexOf(const char* row);
void SetRowIndex(char* row, int32_t index);

// Returns the text in the place of a field or section name. A row from outside may fill the place without
// a zero byte; its last byte is then left out.
std::string_view TextAt(const char* slot);

// Puts at most 255 characters of `text` into such a place and fills the rest with zero bytes.
void SetTextAt(char* slot, std::string_view text);
}  // namespace kobd

extern "C"
{
    // Frees every entry. Count and highest index become 0; the loaded flag stays as it is.
    void cellularListFree(kobd::CellularList* list);
}
