// What a person or a program reads: JSON strings and error lines.
#pragma once

#include <string>
#include <string_view>

namespace kobd::client
{
struct Options
{
    bool json = false;
    bool silent = false;
    bool follow = false;
    bool resume = false;
    std::string parent = {};  // path of the object under which a row is added
    int confirm_s = 0;        // the old values return after these seconds; 0: they do not
    int timeout_ms = 5000;
    int count = 0;  // messages or lines to wait for, 0: no end
};

// Bytes of the UTF-8 character at the start of `text`, which is not empty; 0 when there is none.
size_t CharacterLength(std::string_view text);

// What a device on the network calls itself ends up on a terminal: no byte of it may steer that, so
// control characters and bytes that are no UTF-8 become "\x1b".
std::string Escaped(std::string_view text);

// The text for standard output: escaped on a terminal, as it is in a pipe or a file.
std::string Shown(std::string_view text);

// The word in a colour on a terminal that wants colours (NO_COLOR is not set), else as it is. The word must
// say by itself what the colour says.
enum class Colour
{
    kGreen = 32,
    kRed = 31,
    kYellow = 33,
};
std::string Coloured(Colour colour, const std::string& word);

// True when standard output is a pipe that nobody reads any more: who waits for something to print
// would otherwise wait on.
bool OutputClosed();

// A JSON string with its quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

// Whether a name matches the pattern of a list command; one without wildcards matches anywhere.
bool MatchesName(const std::string& pattern, const std::string& name);

// "Invalid argument (2)".
std::string CodeText(int code);

// One error line on standard error, or with --json an object; returns exit status 1.
int Fail(const Options& options, int code, const std::string& what);

// The line for a request that the bus did not carry or the daemon refused as a whole.
int FailRequest(const Options& options, int code, bool from_bus, const std::string& what);
}  // namespace kobd::client
