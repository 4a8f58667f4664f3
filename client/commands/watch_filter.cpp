// Patterns against the names in a message.
#include "client/commands/watch_filter.h"

#include <algorithm>

#include "client/dictionary/dictionary.h"
#include "client/dictionary/events.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
bool MatchesOne(const Words& patterns, const std::string& name)
{
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string& pattern) { return MatchesName(pattern, name); });
}

bool MatchesAnything(const std::string& pattern)
{
    const auto matches = [&](const auto& entry) { return MatchesName(pattern, entry.name); };
    return std::any_of(Objects().begin(), Objects().end(), matches) ||
           std::any_of(Tables().begin(), Tables().end(), matches) ||
           std::any_of(Events().begin(), Events().end(), matches);
}
}  // namespace

Failure CheckPatterns(const Words& patterns)
{
    for (const std::string& pattern : patterns)
        if (pattern.empty() || !MatchesAnything(pattern))
            return {kNotFound, "no object, table or event matches '" + pattern + "'" + DidYouMean(Nearest(pattern))};
    return {};
}

bool IsAskedFor(const Words& patterns, uint16_t id, kobd_bytes payload)
{
    if (patterns.empty()) return true;
    if (const NetworkEvent* event = FindEvent(id)) return MatchesOne(patterns, event->name);
    kobd_item item{};
    while (kobd_bytes_next(&payload, &item) == 1)
        if ((item.tag == KOBD_TAG_OBJECT_NAME || item.tag == KOBD_TAG_TABLE_NAME) && item.text != nullptr &&
            MatchesOne(patterns, item.text))
            return true;
    return false;
}
}  // namespace kobd::client
