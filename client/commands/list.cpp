// kobctl list [PATTERN], describe NAME..., and the names for completion: from the dictionary alone.
#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// The positions of the name in the dictionary: "7", or "7 and 12" for a name that stands there twice.
std::string Positions(const std::string& name)
{
    std::string positions;
    for (size_t i = 0; i < Objects().size(); ++i)
        if (name == Objects()[i].name) positions += (positions.empty() ? "" : " and ") + std::to_string(i + 1);
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
             {"type", TypeName(object.type)},
             {"access", AccessText(object.access)},
             {"accepts", Accepts(object)},
             {"limitation", object.limitation != nullptr ? object.limitation : ""},
             {"validator", validator},
             {"position", positions}},
            name + "\n  type      " + TypeName(object.type) + "\n  access    " + AccessText(object.access) +
                "\n  accepts   " + Accepts(object) + "\n" +
                (validator.empty() ? "" : "  checked   by " + validator + "\n") + "  position  " + positions +
                (twice ? " (requests reach the first)" : "") + "\n"};
}
}  // namespace

Outcome CommandList(const Options&, const Words& pattern)
{
    Outcome outcome(Json::array(), "");
    const auto add = [&](const char* name, const char* kind)
    {
        if (!pattern.empty() && !MatchesName(pattern[0], name)) return;
        outcome.data.push_back({{"name", name}, {"kind", kind}});
        outcome.text += std::string(name) + "\n";
    };
    for (const ObjectEntry& object : Objects()) add(object.name, "object");
    for (const TableEntry& table : Tables()) add(table.name, "table");
    if (outcome.text.empty()) outcome.notes.push_back("no name matches '" + pattern[0] + "'");
    return outcome;
}

Outcome CommandDescribe(const Options&, const Words& names)
{
    Outcome outcome(Json::array(), "");
    for (const std::string& name : names)
    {
        const ObjectEntry* object = FindObject(name);
        const TableEntry* table = FindTable(name);
        if (object == nullptr && table == nullptr)
        {
            outcome.notes.push_back(
                Refused(kNotFound, "there is no object or table " + name + DidYouMean(Nearest(name))).what);
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
    if (kind == "objects")
        for (const ObjectEntry& object : Objects()) names.emplace_back(object.name);
    if (kind == "tables")
        for (const TableEntry& one : Tables()) names.emplace_back(one.name);
    if (kind == "columns" && table != nullptr)
        for (const ColumnDef& column : table->layout.columns) names.emplace_back(column.name);
    Outcome outcome;
    for (const std::string& name : names) outcome.text += name + "\n";
    return outcome;
}
}  // namespace kobd::client
