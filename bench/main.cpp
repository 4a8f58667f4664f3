// Takes all measurements of time in one run and prints them as one table; after the word "commits", "taps" or "start"
// it takes those alone. Like the tests, it runs in its own namespaces.
#include <cstdio>
#include <filesystem>
#include <string_view>

#include "bench/measure.h"
#include "bench/phases.h"
#include "tests/namespaces.h"

int main(int count, char** words)
{
    kobd::test::EnterOwnNamespaces();
    if (!kobd::test::own_namespaces) return 1;
    const std::string disk_folder = kobd::test::kPrograms + "bench-state";
    std::filesystem::remove_all(disk_folder);  // of a run that was ended
    kobd::bench::PrintHeading();
    const std::string_view alone = count > 1 ? words[1] : "";
    if (alone.empty()) kobd::bench::RoundTrips();
    if (alone.empty() || alone == "commits") kobd::bench::Commits(disk_folder);
    if (alone.empty() || alone == "taps") kobd::bench::Taps();
    if (alone.empty() || alone == "start") kobd::bench::StartUp();
    if (alone.empty())
    {
        kobd::bench::Growth();
        kobd::bench::Lookups();
    }
    std::filesystem::remove_all(disk_folder);
    return 0;
}
