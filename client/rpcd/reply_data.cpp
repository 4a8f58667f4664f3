// Naming things as rpcd's replies do.
#include "client/rpcd/reply_data.h"

namespace kobd::client
{
namespace
{
Json PositionsText(const Json& positions)
{
    std::string text;
    for (const Json& position : positions) text += (text.empty() ? "" : " and ") + position.dump();
    return text;
}

Json ColumnOf(const Json& column)
{
    Json out;
    for (const auto& [key, value] : column.items())
        if ((key != "meaning" && key != "unit") || value != "") out[key == "accepts" ? "takes" : key] = value;
    return out;
}
}  // namespace

Outcome WithChecks(Outcome outcome)
{
    for (Json& check : outcome.data)
        check = {{"item", check["item"]}, {"verdict", check["verdict"]}, {"why", check["reason"]}};
    return outcome;
}

Outcome WithDescriptions(Outcome outcome)
{
    for (Json& one : outcome.data)
    {
        if (one.contains("positions")) one["position"] = PositionsText(one["positions"]);
        one.erase("positions");
        if (one.contains("columns"))
            for (Json& column : one["columns"]) column = ColumnOf(column);
    }
    return outcome;
}

Json ChangesOf(const std::vector<PastChange>& changes)
{
    const auto text_or_null = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
    Json out = Json::array();
    for (const PastChange& change : changes)
        out.push_back({{"commit", change.batch},
                       {"time", change.time},
                       {"process", change.process},
                       {"program", change.program},
                       {"what", change.Name()},
                       {"old", text_or_null(change.old)},
                       {"new", text_or_null(change.now)},
                       {"undo", change.step != 0 ? Json(change.step) : Json()}});
    return out;
}
}  // namespace kobd::client
