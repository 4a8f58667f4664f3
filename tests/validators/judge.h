// What a check says about a text: its code and the lines it writes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kobd::test
{
enum : int
{
    kTakes = 0,
    kRefuses = 2,
};

struct Check
{
    const char* name;
    int (*function)(const char*);
};
#define CHECK(function) \
    Check { #function, function }

// A text from outside, in a heap block of exactly its size, so that the sanitizers see every byte
// read beside it.
std::vector<char> ExactText(std::string_view text);

// The code in decimal, then the log messages in their order, each behind a "|". A message under
// another name than the check's begins with that name and ": ".
std::string Judge(const Check& check, std::string_view text);

// The lines of a log, "function: message" each; a message may have line ends of its own.
std::vector<std::string> LogLines(const std::string& output);
}  // namespace kobd::test
