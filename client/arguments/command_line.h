// The words after "kobctl", and the lines of a batch.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "client/arguments/words.h"

namespace kobd::client
{
inline constexpr int kLongestConfirm = 7 * 24 * 60 * 60;  // seconds

struct Options
{
    bool json = false;
    bool silent = false;
    bool follow = false;
    bool resume = false;
    bool help = false;
    bool version = false;
    bool secrets = false;
    bool long_lines = false;
    bool json_schema = false;
    bool openapi = false;
    bool yang = false;
    bool exact_case = false;                // upper and lower case are different letters in a pattern
    std::vector<std::string> columns = {};  // of tables; none: all
    std::string pcap = {};                  // the file that a monitor writes
    int poll_ms = 0;                        // between looks at values; 0: none are looked at
    std::string parent = {};                // path of the object under which a row is added
    int confirm_s = 0;                      // seconds until the old values return; 0: they do not
    std::optional<int> timeout_ms = {};     // how long an answer of the daemon may take, when it was given
    int count = 0;                          // messages or lines to wait for; 0: without end
    int64_t since_s = 0;                    // seconds since 1970, from when on changes are shown
    bool announce = false;
    bool all = false;      // a pattern may match everything
    bool diff = false;     // show what a set changes
    bool dry_run = false;  // show what an import would change
    int code = 17;         // that a simulated operation fails with: invoke failed
    int times = 0;         // how often it does; 0: always
    int speed = 1;         // of a scenario
};

struct CommandLine
{
    Options options = {};
    Words words = {};
    Words own_options = {};  // the given ones that not every command takes: "--silent"
};

// Splits arguments into words and options. Options may stand anywhere before "--".
Failure ReadCommandLine(const Words& arguments, CommandLine* line);

// The options that every command takes, and whether an option, "--count", has a value.
Words OptionsOfEveryCommand();
bool OptionTakesValue(const std::string& option);

// Splits a line into words at blanks. '...' holds anything but a quote. In "..." and outside of quotes a backslash
// makes the next character an ordinary one. A # at the start of a word begins a comment. No other character is special.
Failure SplitLine(std::string_view line, Words* words);
}  // namespace kobd::client
