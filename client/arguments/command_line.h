// The words after "kobctl", and the lines of a batch.
#pragma once

#include <string_view>

#include "client/arguments/options.h"
#include "client/arguments/words.h"
#include "client/output/failure.h"

namespace kobd::client
{
struct CommandLine
{
    Options options = {};
    Words words = {};
    Words own_options = {};  // those that not every command takes, as given: "--silent"
};

// Parts arguments into words and options. Options may stand anywhere before "--".
Failure ReadCommandLine(const Words& arguments, CommandLine* line);

// Parts a line into words at blanks. '...' holds anything but a quote. In "..." and outside of quotes a backslash makes
// the next character an ordinary one. A # at the start of a word begins a comment. Nothing else has a meaning.
Failure SplitLine(std::string_view line, Words* words);
}  // namespace kobd::client
