// What all measurements share: series of rounds, processors, and the one table they print.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace kobd::bench
{
using Clock = std::chrono::steady_clock;

inline double MicrosecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// Median of the values; they must not be empty.
double Median(std::vector<double> values);

// The medians of the rounds of one case.
struct Series
{
    std::vector<double> rounds;

    double Middle() const { return Median(rounds); }
    double Lowest() const;
    double Highest() const;
};

// Keeps this process, and what it starts from now on, to the first of the processors it may use, or
// gives all of them back. Aborts when the system refuses.
void Pin(bool one_processor);

void PrintHeading();
// A line of the table: the series in `unit` with its lowest and highest round.
void PrintLine(const std::string& what, const Series& measured, const char* unit);
// The same against a limit: the ratio is that of the medians. aim: highest ratio wanted, 0 for none.
void PrintAgainst(const std::string& what, const Series& measured, const Series& limit, double aim);
}  // namespace kobd::bench
