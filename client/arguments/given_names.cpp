#include "client/arguments/given_names.h"

#include <set>

#include "client/arguments/input_file.h"
#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
Failure ReadWords(const Words& words, Words* all)
{
    for (const std::string& word : words)
    {
        InputFile file;
        if (word != "-") all->push_back(word);
        if (word != "-") continue;
        if (Failure failure = ReadInput(word, &file)) return failure;
        if (file.text.find('\0') != std::string::npos)
            return {kInvalidArgument, file.name + " has a zero byte, which no name has"};
        for (const std::string_view line : LinesOf(file.text))
            if (!line.empty()) all->emplace_back(line);
    }
    if (all->empty() && !words.empty()) return {kWrongUse, "no name was given: standard input has no lines"};
    return {};
}

Failure ReadNames(const Options& options, const Words& words, const std::string& kind, const Words& known, Words* names)
{
    Words all;
    if (Failure failure = ReadWords(words, &all)) return failure;
    std::set<std::string> taken(names->begin(), names->end());
    const auto add = [&](const std::string& name)
    {
        if (taken.insert(name).second) names->push_back(name);
    };
    for (const std::string& word : all)
    {
        bool matches = !HasWildcards(word);
        if (matches) add(word);
        for (const std::string& name : matches ? Words() : known)
            if (MatchesName(word, name, options.exact_case))
            {
                add(name);
                matches = true;
            }
        if (!matches) return {kNotFound, "no " + kind + " matches '" + word + "'"};
    }
    return {};
}
}  // namespace kobd::client
