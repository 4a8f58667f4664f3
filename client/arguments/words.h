// Words of a command line, and what single words say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/dictionary/names.h"
#include "client/output/failure.h"

namespace kobd::client
{
// "1 line", "2 lines".
std::string Counted(size_t count, const char* word);

// The lines of the text, without their line ends; valid as long as the text.
std::vector<std::string_view> LinesOf(std::string_view text);

// An integer in decimal digits, after a minus sign where `lowest` is negative; nothing outside of the range.
std::optional<int64_t> ReadInteger(const std::string& text, int64_t lowest, int64_t highest);

// NAME=VALUE: an object, a key or a column with its value.
struct Assignment
{
    std::string name;
    std::string value;

    std::string Text() const { return name + "=" + value; }
};

using Assignments = std::vector<Assignment>;

// Appends the assignment that the word says. False for a word of another form.
[[nodiscard]] bool ReadAssignment(std::string_view word, Assignments* pairs);

// Whether the last assignment has the name of one before it.
bool IsGivenTwice(const Assignments& pairs);

// Reads all words. `takes` begins the failure for a word of another form: "set takes NAME=VALUE". Fails, too, for a
// name that stands twice.
Failure ReadAssignments(const std::string& takes, const Words& words, Assignments* pairs);

// "NAME, NAME".
std::string NamesOf(const Assignments& pairs);
}  // namespace kobd::client
