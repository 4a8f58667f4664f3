// The name index: an open-addressing table of the records, filled once at start-up.
#include "dictionary/name_index.h"

#include <array>
#include <bit>
#include <cstring>

namespace kobd
{
namespace
{
constexpr uint16_t kEmpty = 0;

struct Slot
{
    uint32_t hash = 0;         // of the record's name
    uint16_t length = 0;       // characters of the name
    uint16_t number = kEmpty;  // the record's number + 1, objects first
};

std::array<Slot, kNameSlots> name_index;
constexpr int kSlotShift = 32 - std::countr_zero(kNameSlots);  // the high bits of a hash choose its slot

// Chosen so that no two names of the dictionary have the same hash: a lookup compares with one name at most.
uint64_t seed = 0;

NamedRecord RecordOf(size_t number)
{
    if (number < kObjects.size()) return {.object = &kObjects[number]};
    return {.table = &kTables[number - kObjects.size()]};
}

const char* NameOf(const NamedRecord& record)
{
    return record.object != nullptr ? record.object->name : record.table->name;
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

// Takes every character, so that names with a common beginning spread.
uint32_t NameHash(std::string_view name)
{
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;  // odd, near 2^64 divided by the golden ratio
    uint64_t hash = seed + name.size();
    const auto mix = [&hash](uint64_t word) { hash = (hash ^ word) * kMultiplier; };
    if (name.size() < kStep)
        for (const char letter : name) mix(static_cast<unsigned char>(letter));
    else
    {
        const char* last = name.data() + name.size() - kStep;
        for (const char* at = name.data(); at < last; at += kStep) mix(Word(at));
        mix(Word(last));
    }
    return static_cast<uint32_t>(hash >> 32);  // every character has a part in the high bits
}

// Whether `name`, which has as many characters, is the record's.
bool IsName(const char* record, std::string_view name)
{
    size_t at = 0;
    if (name.size() < kStep)
    {
        while (at < name.size() && record[at] == name[at]) ++at;
        return at == name.size();
    }
    const size_t last = name.size() - kStep;
    while (at < last && Word(record + at) == Word(&name[at])) at += kStep;
    return at >= last && Word(record + last) == Word(&name[last]);
}

// The slot of that hash, or the empty slot where it belongs.
Slot& SlotOf(uint32_t hash)
{
    size_t at = hash >> kSlotShift;
    while (name_index[at].hash != hash && name_index[at].number != kEmpty) at = (at + 1) % kNameSlots;
    return name_index[at];
}

// False when another name has the same hash.
bool Enter(size_t number)
{
    const std::string_view name = NameOf(RecordOf(number));
    const uint32_t hash = NameHash(name);
    Slot& slot = SlotOf(hash);
    if (slot.number != kEmpty) return NameOf(RecordOf(slot.number - 1u)) == name;  // the earlier record keeps it
    slot = {hash, static_cast<uint16_t>(name.size()), static_cast<uint16_t>(number + 1)};
    return true;
}
}  // namespace

void NameIndexBuild()
{
    name_index.fill({});
    for (size_t number = 0; number < kObjects.size() + kTables.size(); ++number)
        if (!Enter(number))
        {
            ++seed;
            return NameIndexBuild();
        }
}

void NameIndexClear() { name_index.fill({}); }

NamedRecord NameLookup(std::string_view name)
{
    const Slot& slot = SlotOf(NameHash(name));
    if (slot.number == kEmpty || slot.length != name.size()) return {};
    const NamedRecord record = RecordOf(slot.number - 1u);
    return IsName(NameOf(record), name) ? record : NamedRecord{};
}
}  // namespace kobd
