// Series of rounds, processors, and the table.
#include "bench/measure.h"

#include <sched.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace kobd::bench
{
double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double Series::Lowest() const { return *std::min_element(rounds.begin(), rounds.end()); }
double Series::Highest() const { return *std::max_element(rounds.begin(), rounds.end()); }

void Pin(bool one_processor)
{
    static const cpu_set_t all = []
    {
        cpu_set_t allowed;
        if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) abort();
        return allowed;
    }();
    cpu_set_t wanted = all;
    int first = 0;
    while (!CPU_ISSET(first, &all)) ++first;
    if (one_processor)
    {
        CPU_ZERO(&wanted);
        CPU_SET(first, &wanted);
    }
    if (sched_setaffinity(0, sizeof wanted, &wanted) != 0) abort();
}

void PrintHeading()
{
    printf("| %-44s | %10s | %-21s | %10s | %5s | %4s |\n", "what", "median", "lowest..highest round", "limit", "ratio",
           "aim");
    printf("|%s|%s|%s|%s|%s|%s|\n", "---", "---", "---", "---", "---", "---");
    fflush(stdout);
}

void PrintLine(const std::string& what, const Series& measured, const char* unit)
{
    char spread[64];
    snprintf(spread, sizeof spread, "%.1f..%.1f", measured.Lowest(), measured.Highest());
    char median[64];
    snprintf(median, sizeof median, "%.1f %s", measured.Middle(), unit);
    printf("| %-44s | %10s | %-21s | %10s | %5s | %4s |\n", what.c_str(), median, spread, "", "", "");
    fflush(stdout);
}

void PrintAgainst(const std::string& what, const Series& measured, const Series& limit, double aim)
{
    char spread[64];
    snprintf(spread, sizeof spread, "%.1f..%.1f", measured.Lowest(), measured.Highest());
    char wanted[16] = "";
    if (aim > 0) snprintf(wanted, sizeof wanted, "%.1f", aim);
    printf("| %-44s | %7.1f us | %-21s | %7.1f us | %5.2f | %4s |\n", what.c_str(), measured.Middle(), spread,
           limit.Middle(), measured.Middle() / limit.Middle(), wanted);
    fflush(stdout);
}
}  // namespace kobd::bench
