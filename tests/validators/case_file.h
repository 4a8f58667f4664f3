// Reads a file of cases for the checks: one line a kind of value.
//
//   # a comment                        A blank line separates.
//   check validIpv4                    Cases of these checks follow; the platform is reset.
//   accept 10.0.0.1 1.0.0.1            # why these values are accepted
//   refuse 0.0.0.0 : "a line\n" "b"    Behind ":" the lines that are written, in their order. Without
//                                      ":" the lines are not looked at.
//   row validMacFilter FwMacFilterTable MAC=00:11:22:33:44:55     A check of rows, and a good row.
//   accept MAC=00-11-22-33-44-55 =AA:BB:CC:DD:EE:FF + MAC_LIST=x   Rows that differ from it: "=" repeats
//                                      the column, "+" changes one more column of the same row.
//   accept MinPort=1 > SrcPort=1       Behind ">" what the check changes in the row, else nothing.
//   stored 3 MAC=AA:BB:CC:DD:EE:FF     A stored row of index 3; "stored" alone removes all.
//   as 3                               The index of the judged rows from here on, at first 1.
//   walk "no memory\n"                 The good row against stored rows; what is written without memory.
//   ends 1300; : "a line\n"            The log ends with these lines; of rows, with all functions' names.
//   raw 24 aa:bb                       Bytes that are put into every judged row, at this offset.
//   value GETTER=TEXT    nvram KEY=TEXT    stage OBJECT=TEXT    interfaces 4    profile 0 ApnEnable=1
//                                      What the platform answers, and what the request in hand changes;
//                                      "stage" takes earlier changes back.
//   include FILE                       The lines of another file stand here.
//
// A value is a word, or stands between double quotes. \n, \t, \\, \", \{ and \xHH are bytes; {ab*3} is
// ababab, and "#" in it counts: {#;*3} is 1;2;3;
#pragma once

#include <string>
#include <vector>

namespace kobd::test
{
struct CaseToken
{
    std::string text;
    bool sign;  // ":", ">" or "+" by itself and without quotes
};

struct CaseLine
{
    int number;
    std::vector<CaseToken> tokens;  // at least the command
    std::string why;                // behind "#"
};

// The lines of the file that hold a command.
std::vector<CaseLine> ReadCases(const std::string& path);
}  // namespace kobd::test
