// The object records, made from the object rows, and what must hold for all of them.
#include <array>
#include <string_view>

#include "dictionary/catalogue/accessors.h"
#include "dictionary/name_index.h"
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
constexpr size_t kObjectCount = 1488;
constinit std::array<StagedValue, kObjectCount> staged_values;

constexpr ObjDef Record(size_t number, const char* name, ValueType type, ObjectGet get, ObjectSet set,
                        const char* limitation = nullptr, ObjectValidator validator = nullptr)
{
    return {kKindObject, name, &staged_values[number], get, set, {type, limitation, validator}};
}

constexpr size_t kFirst = __COUNTER__ + 1;

#define SHARED(accessor) accessor
#define OWN(accessor) accessor
#define OBJECT(name, type, getter, setter, ...) \
    Record(__COUNTER__ - kFirst, name, type, getter, setter __VA_OPT__(, ) __VA_ARGS__),
#define RO(name, type, getter, ...) \
    Record(__COUNTER__ - kFirst, name, type, getter, nullptr __VA_OPT__(, ) __VA_ARGS__),
#define WO(name, type, setter, ...) \
    Record(__COUNTER__ - kFirst, name, type, nullptr, setter __VA_OPT__(, ) __VA_ARGS__),
#define ACTION(name, type, setter, ...) \
    Record(__COUNTER__ - kFirst, name, type, zeroValueGet, setter __VA_OPT__(, ) __VA_ARGS__),
constexpr std::array<ObjDef, kObjectCount> kRecords = {
#include "dictionary/catalogue/objects.def"
};
static_assert(__COUNTER__ - kFirst == kObjectCount, "one row an object, 1488 in all");
#undef OBJECT
#undef RO
#undef WO
#undef ACTION
#undef SHARED
#undef OWN

// What the checks below count. Taken from the rows themselves: under the sanitizers the compiler
// does not compare function addresses at compile time.
enum class RowKind
{
    kReadWrite,
    kReadOnly,
    kWriteOnly,
    kAction,
};

struct RowFacts
{
    RowKind kind;
    bool limitation = false;
    bool validator = false;
};

struct NamesFunction
{
    template <typename Function>
    constexpr NamesFunction(Function*)
    {
    }
};

constexpr RowFacts Facts(RowKind kind) { return {kind}; }
constexpr RowFacts Facts(RowKind kind, const char*) { return {kind, true}; }
constexpr RowFacts Facts(RowKind kind, const char*, NamesFunction) { return {kind, true, true}; }
constexpr RowFacts Facts(RowKind kind, std::nullptr_t, NamesFunction) { return {kind, false, true}; }

#define OBJECT(name, type, getter, setter, ...) Facts(RowKind::kReadWrite __VA_OPT__(, ) __VA_ARGS__),
#define RO(name, type, getter, ...) Facts(RowKind::kReadOnly __VA_OPT__(, ) __VA_ARGS__),
#define WO(name, type, setter, ...) Facts(RowKind::kWriteOnly __VA_OPT__(, ) __VA_ARGS__),
#define ACTION(name, type, setter, ...) Facts(RowKind::kAction __VA_OPT__(, ) __VA_ARGS__),
constexpr std::array<RowFacts, kObjectCount> kFacts = {{
#include "dictionary/catalogue/objects.def"
}};
#undef OBJECT
#undef RO
#undef WO
#undef ACTION

template <typename Test>
constexpr int Count(Test test)
{
    int count = 0;
    for (const ObjDef& object : kRecords) count += test(object);
    return count;
}

constexpr int CountType(ValueType type)
{
    return Count([type](const ObjDef& object) { return object.check.type == type; });
}

static_assert(CountType(VT_STRING) == 1034);
static_assert(CountType(VT_BOOL) == 215);
static_assert(CountType(VT_UINT32) == 102);
static_assert(CountType(VT_INT32) == 71);
static_assert(CountType(VT_ENUM) == 46);
static_assert(CountType(VT_UINT64) == 5);
static_assert(CountType(VT_UINT16) == 5);
static_assert(CountType(VT_TEXT_2) == 5);
static_assert(CountType(VT_TEXT) == 3);
static_assert(CountType(VT_STRING_2) == 1);
static_assert(CountType(VT_STRING_4) == 1);

template <typename Test>
constexpr int CountFacts(Test test)
{
    int count = 0;
    for (const RowFacts& facts : kFacts) count += test(facts);
    return count;
}

constexpr int CountKind(RowKind kind)
{
    return CountFacts([kind](const RowFacts& facts) { return facts.kind == kind; });
}

static_assert(CountKind(RowKind::kReadWrite) + CountKind(RowKind::kAction) == 780);
static_assert(CountKind(RowKind::kReadOnly) == 670);
static_assert(CountKind(RowKind::kWriteOnly) == 38);
static_assert(CountKind(RowKind::kAction) == 46, "the objects that read through zeroValueGet");
static_assert(CountFacts([](const RowFacts& facts) { return facts.limitation; }) == 181);
static_assert(CountFacts([](const RowFacts& facts) { return facts.validator; }) == 75);
static_assert(CountFacts([](const RowFacts& facts) { return facts.limitation && facts.validator; }) == 8);

constexpr bool NamedAt(size_t position, std::string_view name) { return kRecords[position - 1].name == name; }

// First and last object of areas: a row that slips into another area shows here.
static_assert(NamedAt(1, "webLanguage") && NamedAt(5, "webHttpsPort") && NamedAt(6, "APNApplyNumber"));
static_assert(NamedAt(114, "webHttpsLoginFromWan") && NamedAt(199, "lteEventNotifyComd"));
static_assert(NamedAt(364, "networkSpeedtestLanTR") && NamedAt(521, "systemProductModel"));
static_assert(NamedAt(655, "wifiSiteSurvey") && NamedAt(748, "securityFirewallSettingEnable"));
static_assert(NamedAt(810, "voipInfoPhoneNumber") && NamedAt(921, "cbsdRegistrationUserId"));
static_assert(NamedAt(1095, "UpgradeStatus") && NamedAt(1298, "node_587WoLSupported"));
static_assert(NamedAt(1488, "node_556AccessPointNumberOfEntries"));

// Three names stand twice; lookups find the earlier record.
static_assert(NamedAt(341, "lteApn3QciGet") && NamedAt(342, "lteApn3QciGet"));
static_assert(NamedAt(956, "HardwareVersion") && NamedAt(1070, "HardwareVersion"));
static_assert(NamedAt(736, "AccessPointNumberOfEntries") && NamedAt(1092, "AccessPointNumberOfEntries"));

constexpr size_t CountDuplicates()
{
    constexpr size_t kSlots = 4096;
    std::array<uint16_t, kSlots> slots{};
    size_t duplicates = 0;
    for (uint16_t number = 1; number <= kObjectCount; ++number)
    {
        const std::string_view name = kRecords[number - 1u].name;
        size_t slot = NameHash(name) % kSlots;
        while (slots[slot] != 0 && name != kRecords[slots[slot] - 1u].name) slot = (slot + 1) % kSlots;
        if (slots[slot] != 0) ++duplicates;
        slots[slot] = number;
    }
    return duplicates;
}
static_assert(CountDuplicates() == 3, "exactly three object names stand twice");
}  // namespace

const std::span<const ObjDef> kObjects = kRecords;
}  // namespace kobd
