// NAME=VALUE words.
#include "client/arguments/assignment.h"

#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
bool ReadAssignments(const Options& options, const char* command, const Words& words, std::vector<Assignment>* pairs)
{
    for (const std::string& word : words)
    {
        const size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
        {
            WrongUse(options, std::string(command) + " takes NAME=VALUE, not '" + word + "'", command);
            return false;
        }
        pairs->push_back({word.substr(0, equals), word.substr(equals + 1)});
    }
    return true;
}

Items SetItems(const std::vector<Assignment>& pairs)
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
