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
    std::string parent = {};  // path of the object under which a row is added
    int timeout_ms = 5000;
    int count = 0;  // messages or lines to wait for, 0: no end
};

// Bytes of the UTF-8 character at the start of `text`, which is not empty; 0 when there is none.
size_t CharacterLength(std::string_view text);

// A JSON string with its quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

// Whether a name matches the pattern of a list command; one without wildcards matches anywhere.
bool MatchesName(const std::string& pattern, const std::string& name);

// One error line on standard error, or with --json an object; returns exit status 1.
int Fail(const Options& options, int code, const std::string& what);

// The line for a request that the bus did not carry or the daemon refused as a whole.
int FailRequest(const Options& options, int code, bool from_bus, const std::string& what);
}  // namespace kobd::client
