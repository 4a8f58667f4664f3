// The real kobctl as a process, and sessions with it written as a person would see them.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kobd::test
{
struct Ran
{
    int status = -1;  // exit status, or minus the number of the signal that ended it
    std::string output;
    std::string errors;
};

// Starts kobctl with these words without waiting, on the state folder of the tests; ReadKobctl waits
// and gives what it wrote. One at a time.
pid_t StartKobctl(const std::vector<std::string>& words);
Ran ReadKobctl(pid_t process);

Ran RunKobctl(const std::vector<std::string>& words);

// The same from one line. Words are parted by blanks; a part in single quotes is one word.
Ran RunLine(const std::string& line);

// Starts kobctl with this descriptor as its standard output.
pid_t StartKobctlOn(int output, const std::vector<std::string>& words);

// Runs every line "$ kobctl ..." of the transcript and gives the transcript as it then reads: each
// such line, what went to standard output, lines of standard error after "! ", and the exit status
// in brackets where it is not 0. Words are parted as in RunLine.
std::string Replay(const std::string& transcript);
}  // namespace kobd::test
