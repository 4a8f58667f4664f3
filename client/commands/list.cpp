// kobctl list [PATTERN...], describe NAME...: from the dictionary; describe adds what is simulated. kobctl show: the
// names as the running daemon lists them.
#include <algorithm>

#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/requests/request.h"
#include "client/sim/step.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// The positions of the name in the dictionary: 7, or 7 and 12 for a name that stands there twice.
std::vector<size_t> Positions(const std::string& name)
{
    std::vector<size_t> positions;
    for (size_t i = 0; i < kObjectRows.size(); ++i)
        if (name == kObjectRows[i].name) positions.push_back(i + 1);
    return positions;
}

std::string PositionsText(const std::vector<size_t>& positions)
{
    std::string text;
    for (const size_t position : positions) text += (text.empty() ? "" : " and ") + std::to_string(position);
    return text + (positions.size() > 1 ? " (requests reach the first)" : "");
}

std::string Field(const char* name, const std::string& value)
{
    constexpr size_t kWidth = 10;
    std::string padded = name;
    padded.resize(kWidth, ' ');
    return value.empty() ? "" : "  " + padded + value + "\n";
}

Outcome DescribedObject(const ObjectEntry& object)
{
    const kobd_description& described = *kobd_describe(object.name);
    const std::vector<size_t> positions = Positions(object.name);
    const std::string meaning = described.meaning != nullptr ? described.meaning : "";
    const std::string unit = described.unit != nullptr ? described.unit : "";
    const std::string check = described.check != nullptr ? described.check : "";
    return {{{"name", object.name},
             {"kind", "object"},
             {"meaning", meaning},
             {"unit", unit},
             {"type", described.type},
             {"access", described.access},
             {"accepts", described.accepts},
             {"limitation", object.limitation != nullptr ? object.limitation : ""},
             {"validator", check},
             {"positions", positions}},
            std::string(object.name) + "\n" + Field("meaning", meaning) + Field("unit", unit) +
                Field("type", described.type) + Field("access", described.access) +
                Field("accepts", described.accepts) + Field("checked", check.empty() ? "" : "by " + check) +
                Field("position", PositionsText(positions))};
}
}  // namespace

Outcome CommandList(const Options& options, const Words& words)
{
    Words patterns;
    if (Failure failure = ReadWords(words, &patterns)) return failure;
    Outcome outcome(Json::array(), "");
    Grid grid = {{"name", "meaning"}, {false, false}, {}};
    const auto add = [&](const char* name, const char* kind, const char* meaning, const char* unit)
    {
        if (!MatchesAny(patterns, name, options.exact_case)) return;
        outcome.data.push_back(options.long_lines ? MeaningJson(name, kind, meaning, unit)
                                                  : Json({{"name", name}, {"kind", kind}}));
        outcome.text += std::string(name) + "\n";
        grid.lines.push_back({name, MeaningText(meaning, unit)});
    };
    for (size_t i = 0; const kobd_description* object = kobd_object_at(i); ++i)
        add(object->name, "object", object->meaning, object->unit);
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
        add(table->name, "table", table->meaning, nullptr);
    if (options.long_lines && !grid.lines.empty()) outcome.text = TableText(grid);
    if (outcome.text.empty()) outcome.notes.push_back("no name matches '" + Joined(patterns, "' or '") + "'");
    return outcome;
}

// search shows "TABLE COLUMN".
std::string WhereColumnIs(const Words& names, const std::string& name)
{
    for (const std::string& one : names)
        if (const TableEntry* table = FindTable(one); table != nullptr && FindColumn(*table, name) != nullptr)
            return "; kobctl table describe " + one + " describes its column " + name;
    return "";
}

Outcome CommandDescribe(const Options& options, const Words& words)
{
    Words names;
    if (Failure failure = ReadNames(options, words, "object or table", KnownNames(), &names)) return failure;
    Outcome outcome(Json::array(), "");
    const std::vector<SimLine> simulated = options.json ? std::vector<SimLine>() : SimLinesInPassing();
    for (const std::string& name : names)
    {
        const ObjectEntry* object = FindObject(name);
        const TableEntry* table = FindTable(name);
        if (object == nullptr && table == nullptr)
        {
            outcome.notes.push_back(NoSuchNameFailure("object or table", name).what + WhereColumnIs(names, name));
            continue;
        }
        const Outcome one = object != nullptr ? DescribedObject(*object) : DescribedTable(*table);
        outcome.data.push_back(one.data);
        outcome.text += one.text + Field("simulated", Escaped(Joined(SimNotes(simulated, name))));
    }
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
