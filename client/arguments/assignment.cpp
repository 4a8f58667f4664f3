// NAME=VALUE words.
#include "client/arguments/assignment.h"

#include "daemon/base/tlv.h"

namespace kobd::client
{
Failure ReadAssignments(const std::string& takes, const Words& words, Assignments* pairs)
{
    for (const std::string& word : words)
    {
        const size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0) return {kWrongUse, takes + ", not '" + word + "'"};
        pairs->push_back({word.substr(0, equals), word.substr(equals + 1)});
    }
    return {};
}

std::string NamesOf(const Assignments& pairs)
{
    Words names;
    for (const Assignment& pair : pairs) names.push_back(pair.name);
    return Joined(names);
}

Items SetItems(const Assignments& pairs)
{
    Items items;
    for (const auto& [name, value] : pairs)
    {
        items.emplace_back(kTagObjectName, name);
        items.emplace_back(kTagValue, value);
    }
    return items;
}
}  // namespace kobd::client
