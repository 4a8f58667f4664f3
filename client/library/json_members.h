// Reading a JSON text of somebody else's, for kobctl and the gateway.
#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kobd::client
{
// The data of the text, discarded where it is no JSON. `twice` gets the name of a member that an object has twice, of
// which the data has the last; else it stays as it is.
template <typename Json>
Json ParseMembers(std::string_view text, std::string* twice)
{
    std::vector<std::set<std::string>> members;  // of each object that is open
    const auto look = [&](int, typename Json::parse_event_t event, Json& parsed)
    {
        if (event == Json::parse_event_t::object_start) members.emplace_back();
        if (event == Json::parse_event_t::object_end) members.pop_back();
        if (event == Json::parse_event_t::key && !members.back().insert(parsed.template get<std::string>()).second)
            *twice = parsed.template get<std::string>();
        return true;
    };
    return Json::parse(text, look, false);
}
}  // namespace kobd::client
