// The object records, made from the object rows, and what must hold for all of them.
#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string_view>

#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/secrets.h"
#include "dictionary/catalogue/view.h"
#include "dictionary/records.h"

int zeroValueGet(char* value)
{
    value[0] = '0';
    value[1] = 0;
    return 0;
}

namespace kobd
{
namespace
{
constinit std::array<StagedValue, kObjectRows.size()> staged_values;

constexpr ObjDef Record(const char* name, ValueType type, ObjectGet get, ObjectSet set,
                        const char* limitation = nullptr, ObjectValidator validator = nullptr)
{
    return {kKindObject, name, nullptr, get, set, {type, limitation, validator}};
}

// Gives each record its cell.
template <size_t kCount>
constexpr std::array<ObjDef, kCount> WithCells(std::array<ObjDef, kCount> records)
{
    for (size_t i = 0; i < kCount; ++i) records[i].staged = &staged_values[i];
    return records;
}

#define SHARED(accessor) accessor
#define OWN(accessor) accessor
#define OBJECT(name, type, getter, setter, ...) Record(name, type, getter, setter __VA_OPT__(, ) __VA_ARGS__),
#define RO(name, type, getter, ...) Record(name, type, getter, nullptr __VA_OPT__(, ) __VA_ARGS__),
#define WO(name, type, setter, ...) Record(name, type, nullptr, setter __VA_OPT__(, ) __VA_ARGS__),
#define ACTION(name, type, setter, ...) Record(name, type, zeroValueGet, setter __VA_OPT__(, ) __VA_ARGS__),
constexpr std::array kRecords = WithCells(std::to_array<ObjDef>({
#include "dictionary/catalogue/objects.def"
}));
static_assert(kRecords.size() == kObjectRows.size());
static_assert(std::ranges::all_of(kSecretObjects,
                                  [](std::string_view name) {
                                      return std::ranges::find(kObjectRows, name, &ObjectRow::name) !=
                                             kObjectRows.end();
                                  }));

// The names that stand twice in the catalogue; lookups find the earlier record.
constexpr std::string_view kTwice[] = {"AccessPointNumberOfEntries", "HardwareVersion", "lteApn3QciGet"};

constexpr bool OnlyTheseStandTwice()
{
    std::array<std::string_view, kObjectRows.size()> names;
    std::transform(kObjectRows.begin(), kObjectRows.end(), names.begin(),
                   [](const ObjectRow& object) { return object.name; });
    std::sort(names.begin(), names.end());
    const std::string_view* expected = std::begin(kTwice);
    for (size_t i = 1; i < names.size(); ++i)
        if (names[i] == names[i - 1] && (expected == std::end(kTwice) || names[i] != *expected++)) return false;
    return expected == std::end(kTwice);
}
static_assert(OnlyTheseStandTwice(), "an object has the name of another one");
}  // namespace

const std::span<const ObjDef> kObjects = kRecords;
}  // namespace kobd
