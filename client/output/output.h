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
    bool help = false;
    bool version = false;
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

// Writes out what was printed. False when any of it was lost, after a line that says why; nothing is said when the
// reader is gone.
bool FlushOutput();

// A JSON string with its quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

// Whether a name matches the pattern of a list command; one without wildcards matches anywhere.
bool MatchesName(const std::string& pattern, const std::string& name);

// "Invalid argument (2)".
std::string CodeText(int code);

// One line "kobctl: WHAT" on standard error, escaped on a terminal.
void SayError(const std::string& what);

// One error line, with --json an object on standard output too; returns exit status 1.
int Fail(const Options& options, int code, const std::string& what);

// The same for words that make no command; says where the help is, of `command` if given; returns exit status 2.
int WrongUse(const Options& options, const std::string& what, const std::string& command = "");

// Why a request was not carried, or not answered in time.
std::string WhyNoAnswer(const Options& options, int code);

// The line for a request that the bus did not carry or the daemon refused as a whole.
int FailRequest(const Options& options, int code, bool from_bus, const std::string& what);

// The same for one that changes something: without an answer in time it may yet be done.
int FailChange(const Options& options, int code, bool from_bus, const std::string& what);
}  // namespace kobd::client
