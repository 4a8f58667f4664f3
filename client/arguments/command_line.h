// The words behind "kobctl": options taken out, and the lines of a batch parted into words.
#pragma once

#include <string>
#include <string_view>

#include "client/commands/commands.h"

namespace kobd::client
{
// Splits options from words. Options of single commands, with their dashes, also go to `given`. The
// error, or the empty text.
[[nodiscard]] std::string ReadCommandLine(const Words& arguments, Options* options, Words* words, Words* given);

// Parts a line into words at blanks: '...' holds anything but a quote, in "..." and outside of quotes
// a backslash makes the next character an ordinary one, # at the start of a word begins a comment.
// Nothing else has a meaning. The error, or the empty text.
[[nodiscard]] std::string SplitLine(std::string_view line, Words* words);
}  // namespace kobd::client
