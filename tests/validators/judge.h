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
    kYes = 1,  // of the predicates
    kNo = 0,
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

// Texts that are alike to a check, and why they get what they get.
struct TextsByCode
{
    int code;
    const char* why;
    std::vector<std::string> texts;
};

struct TextsByVerdict
{
    std::string verdict;  // as Judge says it
    const char* why;
    std::vector<std::string> texts;
};

// Every text gets its code, whatever is written.
void ExpectCodes(const Check& check, const std::vector<TextsByCode>& kinds);

// Every text gets its verdict, lines included; the missing text has to be refused as well.
void ExpectVerdicts(const Check& check, const std::vector<TextsByVerdict>& kinds);

// A log as Judge gives it, where only the lines of some cases are of interest.
struct LogCase
{
    Check check;
    std::string text;
    std::string log;
};

void ExpectLogs(const std::vector<LogCase>& cases);
}  // namespace kobd::test
