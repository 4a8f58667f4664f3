// Tables of texts and the code that a check gives each.
#pragma once

#include <string>
#include <vector>

#include "tests/validators/judge.h"

namespace kobd::test
{
enum : int
{
    kTakes = 0,
    kRefuses = 2,
    kYes = 1,  // of the predicates
    kNo = 0,
};

struct CodeCase
{
    std::string text;
    int code;
    const char* why;
};

void ExpectCodes(const Check& check, const std::vector<CodeCase>& cases);

// A log as Judge gives it, where only the lines of some cases are of interest.
struct LogCase
{
    Check check;
    std::string text;
    std::string log;
};

void ExpectLogs(const std::vector<LogCase>& cases);
}  // namespace kobd::test
