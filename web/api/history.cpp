// What was changed, and how it returns.
#include "web/api/bus.h"
#include "web/api/kobctl.h"
#include "web/api/routes.h"
#include "web/api/services.h"

namespace kobd::web
{
namespace
{
constexpr int kMost = 10000;  // changes that the history keeps

// Throws a Problem for a member that has another name than these, or that is no integer.
void CheckUndo(const Json& body)
{
    for (const auto& [name, value] : body.items())
    {
        if (name != "count" && name != "newest")
            throw Problem{400, "The body takes \"count\" and \"newest\", not \"" + name + "\".", {{"name", name}}};
        if (!value.is_number_integer()) throw Problem{422, "\"" + name + "\" is no integer."};
    }
}

// Refuses to take back what the caller has not seen: "newest" is the commit that was the newest one for it.
void DemandNewest(const std::string& kobctl, const Json& newest)
{
    const Json changes = RunKobctl(kobctl, {"history", "--count", "1"});
    const Json now = changes.is_array() && !changes.empty() ? changes[0]["commit"] : Json(0);
    if (now == newest) return;
    throw Problem{409,
                  "The newest change is " + now.dump() + ", not " + newest.dump() +
                      "; nothing was taken back. Look at the history again.",
                  {{"newest", now}}};
}
}  // namespace

Reply GetHistory(const Call& call)
{
    const std::string count = call.Query("count", "200");
    NumberIn(count, "The count", 1, kMost);
    Words words = {"history", "--count", count};
    if (!call.Query("match").empty()) words.push_back(NoOption(call.Query("match")));
    return {{{"changes", RunKobctl(call.services.kobctl, words)}}};
}

Reply PostUndo(const Call& call)
{
    CheckUndo(call.body);
    const Json count = call.body.value("count", Json(1));
    if (call.body.contains("newest")) DemandNewest(call.services.kobctl, call.body["newest"]);
    NumberIn(count.dump(), "The count", 1, kMost);
    return {RunKobctl(call.services.kobctl, {"undo", count.dump()})};
}
}  // namespace kobd::web
