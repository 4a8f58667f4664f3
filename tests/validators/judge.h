// What an exported function answers, and the lines it writes.
#pragma once

#include "tests/validators/exported_functions.h"

namespace kobd::test
{
struct Verdict : Outcome
{
    Words lines;  // log messages in their order; another function's begins with its name and ": "
    Words own;    // only those of the function itself
};

// Splits the text of a log into its lines, each of the form "function: message". A message may contain line ends.
Words LogLines(const std::string& output);

Verdict Judge(std::string_view name, const Arguments& arguments);
}  // namespace kobd::test
