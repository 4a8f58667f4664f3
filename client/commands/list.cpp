// kobctl list [PATTERN...], describe NAME..., and the names for completion: from the dictionary alone. kobctl show: the
// names as the running daemon lists them.
#include <algorithm>

#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/dictionary/names.h"
#include "client/requests/request.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// The positions of the name in the dictionary: "7", or "7 and 12" for a name that stands there twice.
std::string Positions(const std::string& name)
{
    std::string positions;
    for (size_t i = 0; i < kObjectRows.size(); ++i)
        if (name == kObjectRows[i].name) positions += (positions.empty() ? "" : " and ") + std::to_string(i + 1);
    return positions;
}

Outcome DescribedObject(const ObjectEntry& object)
{
    const std::string positions = Positions(object.name);
    const bool twice = positions.find(' ') != std::string::npos;
    const std::string validator = object.validator != nullptr ? object.validator : "";
    const std::string name = object.name;
    return {{{"name", name},
             {"kind", "object"},
             {"type", ColumnTypeName(object.type)},
             {"access", AccessText(object.access)},
             {"accepts", Accepts(object)},
             {"limitation", object.limitation != nullptr ? object.limitation : ""},
             {"validator", validator},
             {"position", positions}},
            name + "\n  type      " + ColumnTypeName(object.type) + "\n  access    " + AccessText(object.access) +
                "\n  accepts   " + Accepts(object) + "\n" +
                (validator.empty() ? "" : "  checked   by " + validator + "\n") + "  position  " + positions +
                (twice ? " (requests reach the first)" : "") + "\n"};
}
}  // namespace

Outcome CommandList(const Options& options, const Words& patterns)
{
    Outcome outcome(Json::array(), "");
    const auto add = [&](const char* name, const char* kind)
    {
        const auto matches = [&](const std::string& pattern) { return MatchesName(pattern, name, options.exact_case); };
        if (!patterns.empty() && std::ranges::none_of(patterns, matches)) return;
        outcome.data.push_back({{"name", name}, {"kind", kind}});
        outcome.text += std::string(name) + "\n";
    };
    for (const ObjectEntry& object : kObjectRows) add(object.name, "object");
    for (const TableEntry& table : kTableRows) add(table.name, "table");
    if (outcome.text.empty()) outcome.notes.push_back("no name matches '" + Joined(patterns, "' or '") + "'");
    return outcome;
}

Outcome CommandDescribe(const Options& options, const Words& words)
{
    Words names;
    if (Failure failure = ReadNames(options, words, "object or table", KnownNames(), &names)) return failure;
    Outcome outcome(Json::array(), "");
    for (const std::string& name : names)
    {
        const ObjectEntry* object = FindObject(name);
        const TableEntry* table = FindTable(name);
        if (object == nullptr && table == nullptr)
        {
            outcome.notes.push_back(FailureWithCode(kNotFound, NoSuchName("object or table", name)).what);
            continue;
        }
        const Outcome one = object != nullptr ? DescribedObject(*object) : DescribedTable(*table);
        outcome.data.push_back(one.data);
        outcome.text += one.text;
    }
    return outcome;
}

Outcome CommandCompleteNames(const Options&, const Words& words)
{
    const std::string kind = words.empty() ? "objects" : words[0];
    const TableEntry* table = words.size() == 2 ? FindTable(words[1]) : nullptr;
    Words names;
    if (kind == "objects") names = AllNames(kObjectRows);
    if (kind == "tables") names = AllNames(kTableRows);
    if (kind == "columns" && table != nullptr) names = AllNames(table->layout.columns);
    Outcome outcome;
    for (const std::string& name : names) outcome.text += name + "\n";
    return outcome;
}

Outcome CommandShow(const Options& options, const Words&)
{
    Outcome outcome;
    const Response response = WithClient(options,
                                         [&](kobd_client* client)
                                         {
                                             kobd_bytes content = {};
                                             const int code = kobd_dump(client, KOBD_SHOW, nullptr, &content);
                                             outcome.text.assign(static_cast<const char*>(content.next), content.left);
                                             return code;
                                         });
    if (response.code != 0) return Failure{response.code, "show: " + response.why};
    outcome.data = Json::array();
    for (const std::string_view name : LinesOf(outcome.text)) outcome.data.push_back(name);
    return outcome;
}
}  // namespace kobd::client
