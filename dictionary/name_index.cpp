// The name index: an open-addressing table of record numbers, filled once at start-up.
#include "dictionary/name_index.h"

#include <array>

namespace kobd
{
namespace
{
constexpr size_t kIndexSlots = 4096;  // power of two, over twice the 1591 names
constexpr uint16_t kEmpty = 0;        // a slot holds the record's number + 1, objects first

std::array<uint16_t, kIndexSlots> name_index;

const char* NameOf(size_t number)
{
    return number < kObjects.size() ? kObjects[number].name : kTables[number - kObjects.size()].name;
}

// The slot that holds `name`, or the empty slot where it belongs.
size_t FindSlot(std::string_view name)
{
    size_t slot = NameHash(name) % kIndexSlots;
    while (name_index[slot] != kEmpty && name != NameOf(name_index[slot] - 1u)) slot = (slot + 1) % kIndexSlots;
    return slot;
}

void Enter(size_t number)
{
    uint16_t& slot = name_index[FindSlot(NameOf(number))];
    if (slot == kEmpty) slot = static_cast<uint16_t>(number + 1);  // first entered wins
}
}  // namespace

void NameIndexBuild()
{
    name_index.fill(kEmpty);
    for (size_t number = 0; number < kObjects.size(); ++number) Enter(number);
    for (size_t number = 0; number < kTables.size(); ++number)
    {
        PendingRowLinks* head = kTables[number].pending;
        head->next = head->previous = head;
        Enter(kObjects.size() + number);
    }
}

void NameIndexClear() { name_index.fill(kEmpty); }

NamedRecord NameLookup(std::string_view name)
{
    const uint16_t entry = name_index[FindSlot(name)];
    if (entry == kEmpty) return {};
    const size_t number = entry - 1u;
    if (number < kObjects.size()) return {.object = &kObjects[number]};
    return {.table = &kTables[number - kObjects.size()]};
}
}  // namespace kobd
