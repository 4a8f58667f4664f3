// The client library has no steps of the simulator, no history and no undo. For these the gateway runs the kobctl in
// its own folder. kobctl gets its words as they are; there is no shell.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "web/server/problem.h"

namespace kobd::web
{
using Words = std::vector<std::string>;

// Starts the program with `words`, its output and error output going to the two descriptors. Returns its process, or
// -1 with errno.
pid_t StartProgram(const std::string& path, const Words& words, int output, int error);

// What `kobctl WORDS` prints. Throws a Problem with the line that it says when it fails.
std::string RunKobctlForText(const std::string& path, const Words& words);

// What `kobctl WORDS --json` prints, null for nothing. Throws as above.
Json RunKobctl(const std::string& path, Words words);

// A word of a client's that is to be a name or a value. Throws a Problem for one that kobctl would take for an option.
const std::string& NoOption(const std::string& word);
}  // namespace kobd::web
