// The lines of a case file, taken apart: words, and signs between them. What they mean is up to the test
// that runs the file.
//
// A word stands between blanks, or between double quotes. \n, \t, \\, \", \{ and \xHH are bytes; {ab*3} is
// ababab, and "#" in it counts: {#;*3} is 1;2;3; A word that begins with "#" begins the reason of the line.
// A line that begins with a blank goes on the one before.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kobd::test
{
struct CaseToken
{
    std::string text;
    char sign = 0;         // one of : > + @ | ! by itself and without quotes
    bool missing = false;  // NULL without quotes
};

struct CaseLine
{
    int number;
    std::string command;
    std::vector<CaseToken> tokens;
    std::string why;  // behind "#"
};

// The lines of the file that hold a command. A line "include FILE" stands for those of another file of its folder.
std::vector<CaseLine> ReadCases(const std::string& path);

// The stems of the files *.txt in a folder of the sources.
std::vector<std::string> CaseFiles(const std::string& folder);

// What stands before and behind the first "=" of a word.
std::pair<std::string, std::string> Split(const std::string& assignment);
}  // namespace kobd::test
