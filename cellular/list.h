// A cellular list in memory: entries in a ring whose head is the list, each a heap block of links
// and row. The list owns its entries. Nothing here is locked: all calls come from the thread that
// handles requests.
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
    bool loaded = false;  // set by the first load that read all it asked for
    // Request in which a load failed: it is not tried again before the next one, or a row that could not be
    // read would be written back as zeros.
    std::optional<uint32_t> failed = std::nullopt;
};

// A zero-filled entry that no list has yet; nullptr without memory. ReleaseEntry gives it back.
CellularEntry* NewEntry(const CellularFamily& family);
void ReleaseEntry(CellularEntry* entry);

void AppendEntry(CellularList& list, CellularEntry* entry);
void UnlinkEntry(CellularList& list, CellularEntry* entry);

// The first entry with that index; nullptr without one.
CellularEntry* FindEntry(CellularList& list, int32_t index);

// The entry behind `entry` (the head for the first one); nullptr at the end.
CellularEntry* EntryAfter(CellularList& list, CellularEntry* entry);

int32_t RowIndexOf(const char* row);
void SetRowIndex(char* row, int32_t index);

// The text in a field or section name slot. A row from outside may fill it without a zero byte;
// its last byte then does not count.
std::string_view TextAt(const char* slot);

// Puts `text` into a slot, at most 255 characters, and fills the rest with zero bytes.
void SetTextAt(char* slot, std::string_view text);
}  // namespace kobd

extern "C"
{
    // Releases every entry; count and highest index become 0, the loaded flag stays.
    void cellularListFree(kobd::CellularList* list);
}
