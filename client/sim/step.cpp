// Steps of the simulator, and what is wrong with them.
#include "client/sim/step.h"

#include <algorithm>
#include <array>

#include "client/dictionary/names.h"
#include "client/rows/row_change.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr int kSlowMost = 60000;  // milliseconds

struct OperationName
{
    const char* name;
    Operation operation;
};
constexpr OperationName kOperations[] = {{"get", kGet}, {"set", kSet}, {"add", kAdd}, {"del", kDel}, {"next", kNext}};

bool IsDaemons(const NamedFunction& accessor) { return accessor.naming == NamedFunction::kOwn; }

const ObjectAccessors& AccessorsOf(const ObjectEntry& object)
{
    return kObjectAccessors[static_cast<size_t>(&object - kObjectRows.data())];
}

Failure Unavailable(const std::string& what) { return FailureWithCode(kMethodUnavailable, what); }

Failure KeptByDaemon(const std::string& name)
{
    return Unavailable(name + " is kept by the daemon itself, with uci or the configuration store: it cannot be " +
                       "simulated");
}

Failure ReadSet(const CommandLine& line, SimStep* step)
{
    Assignments pairs;
    if (Failure failure = ReadAssignments("set takes NAME=VALUE", {line.words.begin() + 1, line.words.end()}, &pairs))
        return failure;
    if (pairs.empty()) return {kWrongUse, "set takes NAME=VALUE..."};
    for (const auto& [name, value] : pairs)
        if (Failure failure = CheckSimValue(name, value)) return failure;
    *step = {line.options.announce ? KOBD_HOST_SIM_SET_ANNOUNCED : KOBD_HOST_SIM_SET, SetItems(pairs)};
    return FitsOneRequest(step->items) ? Failure() : Failure{kBufferLimit, TooLarge("these values")};
}

Failure ReadSimTable(const std::string& name, const TableEntry** table)
{
    if (Failure failure = ReadTable(name, table)) return failure;
    return (*table)->daemon_list ? KeptByDaemon(name) : Failure();
}

Failure AddColumns(const RowChange& change, Items* items)
{
    for (const auto& [name, value] : change.values)
    {
        const ColumnDef* column = FindColumn(*change.row.table, name);
        const bool checked = column == nullptr || column->type != VT_STRING_PTR;  // the list keeps its text: any
        if (checked)
            if (Failure failure = CheckColumns({change.row, {{name, value}}})) return failure;
        items->emplace_back(KOBD_TAG_COLUMN_NAME, name);
        items->emplace_back(KOBD_TAG_VALUE, value);
    }
    return FitsOneRequest(*items) ? Failure() : Failure{kBufferLimit, TooLarge("this row")};
}

Failure ReadRow(const CommandLine& line, SimStep* step)
{
    static constexpr char kForm[] =
        "row takes TABLE add COLUMN=VALUE..., TABLE set INDEX COLUMN=VALUE... or TABLE del INDEX";
    const Words& words = line.words;
    const std::string verb = words.size() > 2 ? words[2] : "";
    const bool add = verb == "add";
    if ((!add && verb != "set" && verb != "del") || (!add && words.size() < 4)) return {kWrongUse, kForm};
    RowChange change = {{nullptr, kNoIndexYet}};
    if (Failure failure = ReadSimTable(words[1], &change.row.table)) return failure;
    step->control = add ? KOBD_HOST_SIM_ROW_ADD : verb == "set" ? KOBD_HOST_SIM_ROW_SET : KOBD_HOST_SIM_ROW_DEL;
    step->items = {Item(KOBD_TAG_TABLE_NAME, words[1])};
    if (!add)
    {
        step->last = words[3] == kLastRow;
        if (!step->last)
            if (Failure failure = ReadRowIndex(words[3], &change.row.index)) return failure;
        step->items.emplace_back(KOBD_TAG_ROW_INDEX, change.row.index);
    }
    for (size_t i = add ? 3 : 4; i < words.size(); ++i)
        if (Failure failure = ReadColumnValue(words[i], &change.values)) return failure;
    if (change.values.empty() == (verb == "set") || (verb == "del" && words.size() > 4))
        if (!add) return {kWrongUse, kForm};
    return AddColumns(change, &step->items);
}

// The item that names the object or table.
Failure ReadTarget(const std::string& name, const ObjectEntry** object, const TableEntry** table, Items* items)
{
    *object = FindObject(name);
    *table = *object == nullptr ? FindTable(name) : nullptr;
    if (*object == nullptr && *table == nullptr) return NoSuchNameFailure("object or table", name);
    const bool daemons = *object != nullptr ? IsDaemons(AccessorsOf(**object).getter) : (*table)->daemon_list;
    if (daemons) return KeptByDaemon(name);
    items->emplace_back(*object != nullptr ? KOBD_TAG_OBJECT_NAME : KOBD_TAG_TABLE_NAME, name);
    return {};
}

// The operations of `table`, or of `object`, that can fail.
Words OperationsOf(const ObjectEntry* object, const TableEntry* table)
{
    Words names;
    for (const auto& [name, operation] : kOperations)
    {
        if (table != nullptr && table->Has(operation)) names.emplace_back(name);
        if (object != nullptr && operation == kGet && !AccessorsOf(*object).getter.name.empty())
            names.emplace_back(name);
        if (object != nullptr && operation == kSet && !AccessorsOf(*object).setter.name.empty())
            names.emplace_back(name);
    }
    return names;
}

Failure ReadFail(const CommandLine& line, SimStep* step)
{
    const Words& words = line.words;
    const bool commit = words.size() == 2 && words[1] == "commit";
    if (!commit && words.size() != 3) return {kWrongUse, "fail takes NAME OPERATION, TABLE OPERATION or commit"};
    *step = {KOBD_HOST_SIM_FAIL};
    if (!commit)
    {
        const ObjectEntry* object = nullptr;
        const TableEntry* table = nullptr;
        if (Failure failure = ReadTarget(words[1], &object, &table, &step->items)) return failure;
        const Words operations = OperationsOf(object, table);
        if (std::ranges::find(operations, words[2]) == operations.end())
            return Unavailable(words[1] + " has no operation " + words[2] + ", it has " + Joined(operations));
    }
    step->items.emplace_back(KOBD_TAG_VALUE, words.back());
    step->items.emplace_back(KOBD_TAG_VALUE, int32_t{line.options.code});
    step->items.emplace_back(KOBD_TAG_VALUE, int32_t{line.options.times});
    return {};
}

Failure ReadSlow(const CommandLine& line, SimStep* step)
{
    const Words& words = line.words;
    const auto milliseconds = words.size() == 3 ? ReadInteger(words[2], 1, kSlowMost) : std::nullopt;
    if (!milliseconds) return {kWrongUse, "slow takes NAME or TABLE, and milliseconds from 1 to 60000"};
    *step = {KOBD_HOST_SIM_SLOW};
    const ObjectEntry* object = nullptr;
    const TableEntry* table = nullptr;
    if (Failure failure = ReadTarget(words[1], &object, &table, &step->items)) return failure;
    step->items.emplace_back(KOBD_TAG_VALUE, static_cast<int32_t>(*milliseconds));
    step->items.emplace_back(KOBD_TAG_VALUE, int32_t{line.options.times});
    return {};
}

Failure ReadClear(const CommandLine& line, SimStep* step)
{
    *step = {KOBD_HOST_SIM_CLEAR};
    return line.words.size() == 1 ? Failure() : Failure{kWrongUse, "clear takes no words"};
}

struct Verb
{
    const char* name;
    Failure (*read)(const CommandLine& line, SimStep* step);
    std::array<const char*, 2> options;
};
constexpr Verb kVerbs[] = {{"set", ReadSet, {"--announce"}},
                           {"row", ReadRow, {}},
                           {"fail", ReadFail, {"--code", "--times"}},
                           {"slow", ReadSlow, {"--times"}},
                           {"clear", ReadClear, {}}};

Failure NotImitated(const Response& response, const std::string& what)
{
    if (response.from_bus && response.code == KOBD_TIMEOUT)
        return FailureWithCode(response.code,
                               what + ": " + response.reason + "; this router is not the imitated one, or it is busy");
    if (!response.from_bus && response.code == kIndexNotFound)
        return FailureWithCode(response.code, "there is no such row");
    if (!response.from_bus && response.code == kTableFull) return FailureWithCode(response.code, "the table is full");
    return FailureOf(response, what);
}
}  // namespace

Words SimOperations(const std::string& name)
{
    const ObjectEntry* object = nullptr;
    const TableEntry* table = nullptr;
    Items items;
    return ReadTarget(name, &object, &table, &items) ? Words() : OperationsOf(object, table);
}

Failure CheckSimValue(const std::string& name, const std::string& value)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr)
        return {kInvalidArgument, name + " is a table: kobctl sim row changes its rows"};
    if (object == nullptr) return NoSuchNameFailure("object", name);
    const NamedFunction& getter = AccessorsOf(*object).getter;
    if (IsDaemons(getter)) return KeptByDaemon(name);
    if (getter.name.empty()) return Unavailable(name + " cannot be read: there is nothing to simulate");
    if (value.size() < kValueBuffer) return {};
    return {kInvalidArgument, name + ": a value has at most " + std::to_string(kValueBuffer - 1) + " bytes"};
}

Failure ReadSimStep(const CommandLine& line, SimStep* step)
{
    const std::string name = line.words.empty() ? "" : line.words[0];
    const Verb* verb = FindNamed(kVerbs, name);
    if (verb == nullptr) return {kWrongUse, "there is no step '" + name + "'" + DidYouMean(name, AllNames(kVerbs))};
    for (const std::string& option : line.own_options)
        if (std::ranges::none_of(verb->options, [&](const char* own) { return own != nullptr && option == own; }))
            return {kWrongUse, name + " takes no " + option};
    return verb->read(line, step);
}

Failure SendSimStep(const Options& options, const SimStep& step, Items* answer)
{
    Response response = CallHost(options, step.control, step.items);
    if (answer != nullptr) *answer = std::move(response.items);
    return NotImitated(response, "sim");
}

Failure ReadSimLines(const Options& options, std::vector<SimLine>* lines)
{
    for (size_t before = 0;; before = lines->size())
    {
        Items items;
        const SimStep ask = {KOBD_HOST_SIM_LIST, {Item(KOBD_TAG_VALUE, static_cast<int32_t>(before))}};
        if (Failure failure = SendSimStep(options, ask, &items)) return failure;
        for (size_t i = 0; i + 2 < items.size(); i += 3)
            lines->push_back({items[i].text, items[i + 1].text, items[i + 2].text});
        if (lines->size() == before) return {};
    }
}

std::vector<SimLine> SimLinesInPassing()
{
    Options hasty;
    hasty.timeout_ms = 100;
    std::vector<SimLine> lines;
    if (ReadSimLines(hasty, &lines)) lines.clear();
    return lines;
}

Words SimNotes(const std::vector<SimLine>& lines, const std::string& name)
{
    Words notes;
    for (const auto& [of, what, how] : lines)
        if (what == "value" && ShowsSimulated({{of, what, how}}, name))
            notes.push_back("shows " + how);
        else if (of == name && what != "value" && what != "network")
            notes.push_back(what == "row" ? "row " + how : what == "slow" ? "is slow" : what + " fails");
    return notes;
}

bool ShowsSimulated(const std::vector<SimLine>& lines, const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    const auto shows = [&](const SimLine& line)
    {
        const ObjectEntry* of = line.what == "value" ? FindObject(line.name) : nullptr;
        return of != nullptr && AccessorsOf(*of).getter.name == AccessorsOf(*object).getter.name;
    };
    return object != nullptr && std::ranges::any_of(lines, shows);
}
}  // namespace kobd::client
