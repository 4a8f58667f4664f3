// Words to integers, lists and assignments.
#include "client/arguments/words.h"

#include <algorithm>
#include <charconv>

namespace kobd::client
{
std::string Counted(size_t count, const char* word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::vector<std::string_view> LinesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty())
    {
        const size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::optional<int64_t> ReadInteger(const std::string& text, int64_t lowest, int64_t highest)
{
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if (number < lowest || number > highest || (text[0] == '-' && lowest >= 0)) return std::nullopt;
    return number;
}

bool ReadAssignment(std::string_view word, Assignments* pairs)
{
    const size_t equals = word.find('=');
    if (equals == std::string_view::npos || equals == 0) return false;
    pairs->push_back({std::string(word.substr(0, equals)), std::string(word.substr(equals + 1))});
    return true;
}

Failure ReadAssignments(const std::string& takes, const Words& words, Assignments* pairs)
{
    for (const std::string& word : words)
    {
        if (!ReadAssignment(word, pairs)) return {kWrongUse, takes + ", not '" + word + "'"};
        if (IsGivenTwice(*pairs)) return {kWrongUse, pairs->back().name + " is given twice"};
    }
    return {};
}

bool IsGivenTwice(const Assignments& pairs)
{
    return !pairs.empty() && std::ranges::count(pairs, pairs.back().name, &Assignment::name) > 1;
}

std::string NamesOf(const Assignments& pairs)
{
    Words names;
    for (const Assignment& pair : pairs) names.push_back(pair.name);
    return Joined(names);
}
}  // namespace kobd::client
