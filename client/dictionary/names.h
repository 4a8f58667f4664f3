// Rows of the catalogue by name, result codes in words, names that match a pattern, and "did you mean" for a name that
// is not known.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kobd::client
{
using Words = std::vector<std::string>;

// A result code in words: "Invalid argument (2)".
std::string CodeText(int code);

// The words with the separator between them.
std::string Joined(const Words& words, const char* separator = ", ");

// The first row with this name, which is the one that requests reach; nullptr when there is none.
template <class Rows>
auto FindNamed(const Rows& rows, std::string_view name) -> decltype(&*std::begin(rows))
{
    for (const auto& row : rows)
        if (name == row.name) return &row;
    return nullptr;
}

// The names of the rows, in their order.
template <class Rows>
Words AllNames(const Rows& rows)
{
    Words names;
    for (const auto& row : rows) names.emplace_back(row.name);
    return names;
}

// Whether the word is a pattern with * ? or [].
bool HasWildcards(std::string_view word);

// Whether the name matches the pattern: as a shell matches * ? and [], or anywhere for a pattern without them. Upper
// and lower case count as the same letter unless `exact_case`.
bool MatchesName(const std::string& pattern, const std::string& name, bool exact_case = false);

// Whether one of the patterns matches the name; always without patterns.
bool MatchesAny(const Words& patterns, const std::string& name, bool exact_case);

// The known name that is the fewest changed letters away, of a name below five letters one at most; else the shortest
// that begins with the name; else the empty text. Upper and lower case count as the same letter.
std::string_view NearestName(std::string_view name, const Words& known);

// ", did you mean KNOWN?" for the end of an error; the empty text when no known name is near.
std::string DidYouMean(std::string_view name, const Words& known);
}  // namespace kobd::client
