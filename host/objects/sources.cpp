// The sources of all objects, put together and checked at compile time.
#include "host/objects/sources.h"

#include <array>

#include "dictionary/catalogue/by_name.h"

namespace kobd::host
{
namespace
{
constexpr size_t kObjectCount = kObjectRows.size();

struct SourceRow
{
    const char* object;
    SourceKind kind;
    const char* text;
};

#define SOURCE(object, kind, text) {object, SourceKind::kind, text},
constexpr SourceRow kRows[] = {
#include "host/factory/sources.def"
};
#undef SOURCE

constexpr std::string_view kSecond = "#2";

constexpr size_t Find(std::string_view state_name)
{
    const bool second = state_name.ends_with(kSecond);
    const std::string_view name = second ? state_name.substr(0, state_name.size() - kSecond.size()) : state_name;
    return NumberIn(kObjectNames, name, second ? 1 : 0);
}

constexpr const char* FactoryTextWithoutRow(ValueType type)
{
    return type == VT_STRING || type == VT_TEXT || type == VT_TEXT_2 ? "" : "0";
}

// How many rows each object has.
constexpr auto kRowsOf = []
{
    std::array<int, kObjectCount> rows{};
    for (const SourceRow& row : kRows)
        if (const size_t number = Find(row.object); number != kNoObject) ++rows[number];
    return rows;
}();

constexpr auto kSources = []
{
    std::array<Source, kObjectCount> sources{};
    for (size_t number = 0; number < kObjectCount; ++number)
        sources[number] = {kObjectRows[number].name, SourceKind::Value, FactoryTextWithoutRow(kObjectRows[number].type),
                           number};
    for (const SourceRow& row : kRows)
    {
        const size_t number = Find(row.object);
        if (number == kNoObject) continue;  // refused below, by name
        const bool same = row.kind == SourceKind::SameAs;
        sources[number].kind = row.kind;
        sources[number].text = same ? "" : row.text;
        if (same) sources[number].home = Find(row.text);
    }
    return sources;
}();

constexpr bool IsObjectOnce(std::string_view object)
{
    const size_t number = Find(object);
    return number != kNoObject && kRowsOf[number] == 1;
}

// A SameAs row must name an object of the kind Value. True for rows of other kinds.
constexpr bool HasHome(SourceKind kind, std::string_view text)
{
    if (kind != SourceKind::SameAs) return true;
    const size_t home = Find(text);
    return home != kNoObject && kSources[home].kind == SourceKind::Value;
}

#define SOURCE(object, kind, text)                                               \
    static_assert(IsObjectOnce(object), object ": no such object, or two rows"); \
    static_assert(HasHome(SourceKind::kind, text), object " is the same as " text ", which has no value of its own");
#include "host/factory/sources.def"
#undef SOURCE
}  // namespace

std::span<const Source> Sources() { return kSources; }

std::string StateName(size_t number)
{
    const char* name = kSources[number].object;
    return Find(name) == number ? name : name + std::string(kSecond);
}

size_t NumberOf(std::string_view state_name) { return Find(state_name); }

size_t AccessorOf(size_t number, NamedFunction ObjectAccessors::*accessor)
{
    const std::string_view wanted = (kObjectAccessors[number].*accessor).name;
    for (size_t row = 0; row < kObjectCount; ++row)
        for (const NamedFunction& function : {kObjectAccessors[row].getter, kObjectAccessors[row].setter})
            if (!wanted.empty() && function.IsDefinedHere() && function.name == wanted) return row;
    return kNoObject;
}
}  // namespace kobd::host
