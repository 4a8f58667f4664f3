// The numbers of objects and tables by name, at compile time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <utility>

#include "dictionary/catalogue/view.h"

namespace kobd
{
using NumberedName = std::pair<std::string_view, size_t>;

// The names of the rows with their numbers, sorted. Rows of one name stand in the order of their numbers.
template <class Rows>
constexpr auto ByName(const Rows& rows)
{
    std::array<NumberedName, std::tuple_size_v<Rows>> names{};
    for (size_t number = 0; number < names.size(); ++number) names[number] = {rows[number].name, number};
    std::sort(names.begin(), names.end());
    return names;
}
inline constexpr auto kObjectNames = ByName(kObjectRows);
inline constexpr auto kTableNames = ByName(kTableRows);

inline constexpr size_t kNoNumber = -1;

// The number of the first row of this name, of the one behind it with `behind` 1; kNoNumber when there is none.
template <class Names>
constexpr size_t NumberIn(const Names& names, std::string_view name, size_t behind = 0)
{
    const auto first = std::lower_bound(names.begin(), names.end(), NumberedName{name, 0});
    const size_t place = static_cast<size_t>(first - names.begin()) + behind;
    return place < names.size() && names[place].first == name ? names[place].second : kNoNumber;
}
}  // namespace kobd
