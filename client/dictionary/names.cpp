// Patterns, and the distance between names by single letters changed, added or left out.
#include "client/dictionary/names.h"

#include <fnmatch.h>

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
char Lower(char letter) { return static_cast<char>(tolower(static_cast<unsigned char>(letter))); }

size_t Distance(std::string_view a, std::string_view b)
{
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i)
    {
        size_t diagonal = std::exchange(row[0], i);
        for (size_t j = 1; j <= b.size(); ++j)
        {
            const size_t same = diagonal + (Lower(a[i - 1]) != Lower(b[j - 1]));
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, same});
        }
    }
    return row[b.size()];
}
}  // namespace

std::string CodeText(int code)
{
    const std::string number = std::to_string(code);
    const bool known = code >= 0 && static_cast<size_t>(code) < kResultTexts.size();
    return known ? std::string(ResultText(code)) + " (" + number + ")" : "code " + number + " of the router's library";
}

std::string Joined(const Words& words, const char* separator)
{
    std::string out;
    for (const std::string& word : words) out += (&word == words.data() ? "" : separator) + word;
    return out;
}

bool HasWildcards(std::string_view word) { return word.find_first_of("*?[") != std::string_view::npos; }

bool MatchesName(const std::string& pattern, const std::string& name, bool exact_case)
{
    if (HasWildcards(pattern)) return fnmatch(pattern.c_str(), name.c_str(), exact_case ? 0 : FNM_CASEFOLD) == 0;
    const auto same = [exact_case](char a, char b) { return exact_case ? a == b : Lower(a) == Lower(b); };
    return std::search(name.begin(), name.end(), pattern.begin(), pattern.end(), same) != name.end() || pattern.empty();
}

std::string_view NearestName(std::string_view name, const Words& known)
{
    std::string_view nearest;
    size_t least = std::max<size_t>(2, name.size() / 3);
    for (const std::string& candidate : known)
    {
        const size_t distance = Distance(name, candidate);
        if (distance > least || (distance == least && !nearest.empty())) continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}

std::string DidYouMean(std::string_view name, const Words& known)
{
    const std::string nearest(NearestName(name, known));
    return nearest.empty() ? "" : ", did you mean " + nearest + "?";
}
}  // namespace kobd::client
