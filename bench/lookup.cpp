// The time of a name lookup in this process: every name of the dictionary, in an order that no
// processor can foresee.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <string_view>
#include <vector>

#include "bench/measure.h"
#include "bench/phases.h"
#include "dictionary/name_index.h"

namespace kobd::bench
{
namespace
{
constexpr int kRounds = 11;
constexpr int kPasses = 100;  // over all names, in one round
constexpr double kNsPerUs = 1000;

std::vector<std::string_view> ShuffledNames()
{
    std::vector<std::string_view> names;
    for (const ObjDef& object : kObjects) names.push_back(object.name);
    for (const TableDef& table : kTables) names.push_back(table.name);
    std::shuffle(names.begin(), names.end(), std::mt19937(1));  // the same order in every run
    return names;
}
}  // namespace

void Lookups()
{
    Pin(true);
    NameIndexBuild();
    const std::vector<std::string_view> names = ShuffledNames();
    Series series;
    for (int round = 0; round < kRounds; ++round)
    {
        const auto start = Clock::now();
        size_t found = 0;
        for (int pass = 0; pass < kPasses; ++pass)
            for (const std::string_view name : names)
            {
                const NamedRecord record = NameLookup(name);
                found += record.object != nullptr || record.table != nullptr;
            }
        series.rounds.push_back(MicrosecondsSince(start) * kNsPerUs / static_cast<double>(names.size() * kPasses));
        if (found != names.size() * kPasses) abort();
    }
    PrintLine("name lookup, all names (aim: 60 ns)", series, "ns");
}
}  // namespace kobd::bench
