// Every object accessor of the imitated router, made from the object rows: each reads or keeps the
// running value of its row. An accessor that several rows name is defined at the first of them; the
// later rows mark it SHARED. Those marked OWN belong to the daemon.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/view.h"
#include "host/objects/object_values.h"

using namespace kobd::host;

namespace
{
struct Accessor
{
    std::string_view name;
    size_t number;  // of the row that defines it
    constexpr auto operator<=>(const Accessor&) const = default;
};

// Sorted by name. Places that are not used stand first, with an empty name.
constexpr auto kAccessors = []
{
    std::array<Accessor, 2 * kobd::kObjectAccessors.size()> accessors{};
    size_t count = 0;
    for (size_t number = 0; number < kobd::kObjectAccessors.size(); ++number)
        for (const auto& function : {kobd::kObjectAccessors[number].getter, kobd::kObjectAccessors[number].setter})
            if (function.IsDefinedHere()) accessors[count++] = {function.name, number};
    std::sort(accessors.begin(), accessors.end());
    return accessors;
}();

// The number of the object row that defines the accessor.
consteval size_t RowOf(std::string_view accessor)
{
    const auto found = std::lower_bound(kAccessors.begin(), kAccessors.end(), Accessor{accessor, 0});
    if (found == kAccessors.end() || found->name != accessor) abort();  // ends the build
    return found->number;
}
}  // namespace

#define DEFINE_GET(getter) \
    int getter(char* value) { return ObjectValueGet(RowOf(#getter), value); }
#define DEFINE_SET(setter) \
    int setter(const char* value) { return ObjectValueSet(RowOf(#setter), value); }
#define DEFINE_ACTION(setter) \
    int setter(const char* value) { return ObjectAction(RowOf(#setter), value); }
#include "dictionary/catalogue/accessor_definitions.def"
