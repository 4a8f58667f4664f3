// All measurements of time in one run and one table. In namespaces of its own, like the tests.
#include <cstdio>
#include <filesystem>

#include "bench/measure.h"
#include "bench/phases.h"
#include "tests/namespaces.h"

int main()
{
    kobd::test::EnterOwnNamespaces();
    if (!kobd::test::own_namespaces) return 1;
    const std::string disk_folder = kobd::test::kPrograms + "bench-state";
    std::filesystem::remove_all(disk_folder);  // of a run that was ended
    kobd::bench::PrintHeading();
    kobd::bench::RoundTrips(disk_folder);
    kobd::bench::StartUp();
    kobd::bench::Growth();
    kobd::bench::Lookups();
    std::filesystem::remove_all(disk_folder);
    return 0;
}
