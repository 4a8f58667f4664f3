// The real kobctl as a process, as a shell starts it.
#pragma once

#include <sys/types.h>

#include <string>

namespace kobd::test
{
struct Ran
{
    int status = -1;  // exit status, or minus the number of the signal that ended it
    std::string output;
    std::string errors;

    // As a session shows it: the output, lines of standard error after "! ", and in brackets a status that is not 0.
    std::string Text() const;
};

// Runs a line of the shell, which finds kobctl, on the state folder of the tests.
Ran RunShell(const std::string& line);

// The words after kobctl; its Text.
Ran RunLine(const std::string& words);
std::string Said(const std::string& words);

// The same without waiting, on a standard output of the caller's or where ReadKobctl finds it. One at a time.
pid_t StartKobctl(const std::string& words, int output = -1);
Ran ReadKobctl(pid_t process);
}  // namespace kobd::test
