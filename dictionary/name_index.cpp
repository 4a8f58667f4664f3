// The name index: an open-addressing table of the records, filled once at start-up.
#include "dictionary/name_index.h"

#include <array>
#include <cstring>

namespace kobd
{
namespace
{
constexpr size_t kIndexSlots = 4096;  // power of two, over twice the 1591 names
constexpr uint16_t kEmpty = 0;

// The length of the name stands beside the number, so that a lookup measures no record's name and
// compares characters only with names of the same length.
struct Slot
{
    uint16_t number = kEmpty;  // the record's number + 1, objects first
    uint16_t length = 0;       // characters of its name
};

std::array<Slot, kIndexSlots> name_index;

const char* NameOf(size_t number)
{
    return number < kObjects.size() ? kObjects[number].name : kTables[number - kObjects.size()].name;
}

// Names are read eight characters at a time, because a request looks up many of them. The last
// eight may overlap the eight before them.
constexpr size_t kStep = sizeof(uint64_t);

uint64_t Word(const char* text)
{
    uint64_t word;
    memcpy(&word, text, kStep);
    return word;
}

constexpr uint64_t Mix(uint64_t hash, uint64_t word)
{
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;  // odd, near 2^64 divided by the golden ratio
    hash = (hash ^ word) * kMultiplier;
    return hash ^ (hash >> 32);  // brings the high bits down to where slots are chosen
}

// Takes every character, so that names with a common beginning spread.
uint64_t NameHash(std::string_view name)
{
    uint64_t hash = name.size();
    if (name.size() < kStep)
    {
        for (const char letter : name) hash = Mix(hash, static_cast<unsigned char>(letter));
        return hash;
    }
    const size_t last = name.size() - kStep;
    for (size_t at = 0; at < last; at += kStep) hash = Mix(hash, Word(&name[at]));
    return Mix(hash, Word(&name[last]));
}

// The slot that holds `name`, or the empty slot where it belongs.
Slot& FindSlot(std::string_view name)
{
    size_t at = NameHash(name) % kIndexSlots;
    const auto is_other = [name](const Slot& slot)
    { return slot.length != name.size() || memcmp(name.data(), NameOf(slot.number - 1u), name.size()) != 0; };
    while (name_index[at].number != kEmpty && is_other(name_index[at])) at = (at + 1) % kIndexSlots;
    return name_index[at];
}

void Enter(size_t number)
{
    const std::string_view name = NameOf(number);
    Slot& slot = FindSlot(name);
    if (slot.number == kEmpty)  // the record entered first keeps the name
        slot = {static_cast<uint16_t>(number + 1), static_cast<uint16_t>(name.size())};
}
}  // namespace

void NameIndexBuild()
{
    name_index.fill({});
    for (size_t number = 0; number < kObjects.size(); ++number) Enter(number);
    for (size_t number = 0; number < kTables.size(); ++number) Enter(kObjects.size() + number);
}

void NameIndexClear() { name_index.fill({}); }

NamedRecord NameLookup(std::string_view name)
{
    const uint16_t entry = FindSlot(name).number;
    if (entry == kEmpty) return {};
    const size_t number = entry - 1u;
    if (number < kObjects.size()) return {.object = &kObjects[number]};
    return {.table = &kTables[number - kObjects.size()]};
}
}  // namespace kobd
