#include "web/server/body.h"

#include <set>
#include <string>
#include <vector>

namespace kobd::web
{
Json BodyOf(std::string_view text)
{
    std::vector<std::set<std::string>> members;  // of each object that is open
    std::string twice;
    const auto look = [&](int, Json::parse_event_t event, Json& parsed)
    {
        if (event == Json::parse_event_t::object_start) members.emplace_back();
        if (event == Json::parse_event_t::object_end) members.pop_back();
        if (event == Json::parse_event_t::key && !members.back().insert(parsed.get<std::string>()).second)
            twice = parsed.get<std::string>();
        return true;
    };
    Json body = Json::parse(text, look, false);
    if (!body.is_object()) throw Problem{400, "The body is no JSON object."};
    if (!twice.empty()) throw Problem{422, "The body has '" + twice + "' twice.", {{"name", twice}}};
    return body;
}
}  // namespace kobd::web
