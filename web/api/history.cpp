// What was changed, and how it returns.
#include "web/api/bus.h"
#include "web/api/kobctl.h"
#include "web/api/routes.h"
#include "web/api/services.h"

namespace kobd::web
{
constexpr int kMost = 10000;  // changes that the history keeps

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
    const Json count = call.body.value("count", Json(1));
    if (!count.is_number_integer()) throw Problem{422, "\"count\" is no integer."};
    NumberIn(count.dump(), "The count", 1, kMost);
    return {RunKobctl(call.services.kobctl, {"undo", count.dump()})};
}
}  // namespace kobd::web
