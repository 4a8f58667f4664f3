// The names that the words of a command say.
#pragma once

#include "client/arguments/command_line.h"

namespace kobd::client
{
// Appends the words, with the lines of standard input in the place of "-". Fails where that leaves none.
Failure ReadWords(const Words& words, Words* all);

// Appends what the words say, each name once: a word with * ? or [] stands for the known names that match it, "-" for
// the lines of standard input, and any other word for itself, known or not. `kind` is what the names are: "object".
// Fails for a pattern that matches none.
Failure ReadNames(const Options& options, const Words& words, const std::string& kind, const Words& known,
                  Words* names);
}  // namespace kobd::client
