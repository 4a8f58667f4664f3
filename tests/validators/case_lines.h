// The lines of a case file, taken apart. cases_test.cpp says what they mean.
#pragma once

#include <string>
#include <vector>

namespace kobd::test
{
struct CaseToken
{
    std::string text;
    char sign = 0;         // ':', '>', '+' or '@' by itself and without quotes
    bool missing = false;  // NULL without quotes
};

struct CaseLine
{
    int number;
    std::string command;
    std::vector<CaseToken> tokens;
    std::string why;  // behind "#"
};

// The lines of the file that hold a command.
std::vector<CaseLine> ReadCases(const std::string& path);
}  // namespace kobd::test
