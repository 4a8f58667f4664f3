// Patterns, and the distance between names by single letters changed, added or left out, or by two exchanged.
#include "client/dictionary/names.h"

#include <fnmatch.h>

#include <algorithm>
#include <cctype>
#include <vector>

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
char Lower(char letter) { return static_cast<char>(tolower(static_cast<unsigned char>(letter))); }

size_t Distance(std::string_view a, std::string_view b)
{
    const size_t width = b.size() + 1;
    std::vector<size_t> parts((a.size() + 1) * width);  // the distances of the first i and j letters
    const auto at = [&](size_t i, size_t j) -> size_t& { return parts[i * width + j]; };
    const auto same = [&](size_t i, size_t j) { return Lower(a[i - 1]) == Lower(b[j - 1]); };
    for (size_t i = 0; i <= a.size(); ++i) at(i, 0) = i;
    for (size_t j = 0; j <= b.size(); ++j) at(0, j) = j;
    for (size_t i = 1; i <= a.size(); ++i)
        for (size_t j = 1; j <= b.size(); ++j)
        {
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (same(i, j) ? 0 : 1)});
            if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j)) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    return at(a.size(), b.size());
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

bool MatchesAny(const Words& patterns, const std::string& name, bool exact_case)
{
    return patterns.empty() || std::ranges::any_of(patterns, [&](const std::string& pattern)
                                                   { return MatchesName(pattern, name, exact_case); });
}

std::string_view NearestName(std::string_view name, const Words& known)
{
    std::string_view nearest;
    constexpr size_t kShortestBeginning = 3;
    constexpr size_t kShort = 5;  // letters: of a shorter name, two wrong letters are half or more
    size_t least = name.size() < kShort ? 1 : std::max<size_t>(2, name.size() / 3);
    for (const std::string& candidate : known)
    {
        const size_t distance = Distance(name, candidate);
        if (distance > least || (distance == least && !nearest.empty())) continue;
        least = distance;
        nearest = candidate;
    }
    const auto begins = [name](std::string_view candidate)
    {
        return candidate.size() > name.size() &&
               std::ranges::equal(candidate.substr(0, name.size()), name, {}, Lower, Lower);
    };
    if (nearest.empty() && name.size() >= kShortestBeginning)
        for (const std::string& candidate : known)
            if (begins(candidate) && (nearest.empty() || candidate.size() < nearest.size())) nearest = candidate;
    return nearest;
}

std::string DidYouMean(std::string_view name, const Words& known)
{
    const std::string nearest(NearestName(name, known));
    return nearest.empty() ? "" : ", did you mean " + nearest + "?";
}
}  // namespace kobd::client
