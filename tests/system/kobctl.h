// Runs the real kobctl as a person would.
#pragma once

#include <string>

namespace kobd::test
{
struct KobctlRun
{
    int status = -1;     // exit status
    std::string output;  // standard output
    std::string errors;  // standard error
};

// Runs "kobctl <arguments>" through the shell, on the state folder of the tests.
KobctlRun Kobctl(const std::string& arguments);
}  // namespace kobd::test
