// kobctl import FILE: checks the whole file, then sets what differs from the router.
#include <algorithm>
#include <map>
#include <span>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/rows/import_rows.h"
#include "client/state/daemon_state.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr size_t kMistakesShown = 20;
constexpr int kOpenStatus = 3;  // exit status of a dry run of which only the daemon can judge a part

using FileValues = std::span<const FileValue* const>;

Items ItemsOf(FileValues values)
{
    Assignments pairs;
    for (const FileValue* value : values) pairs.push_back({value->name, value->value});
    return SetItems(pairs);
}

// One run of the import: what it sent, what was set and what was refused.
class Import
{
public:
    Import(const Options& options, const InputFile& file) : options_(options), file_(file) {}

    // Sends the values, as many together as fit one request. Where a request is refused it sends its halves, so that
    // checks across values see as much as possible at once and the wrong value is found.
    void SendValues(FileValues left)
    {
        while (!left.empty() && lost_.empty())
        {
            size_t count = 1;
            while (count < left.size() && FitsOneRequest(ItemsOf(left.first(count + 1)))) ++count;
            SendOrHalve(left.first(count));
            left = left.subspan(count);
        }
    }

    void SendTable(const TablePlan& plan)
    {
        if (!lost_.empty()) return;
        const std::string name = plan.table->name;
        if (const Failure failure = ReplaceRows(options_, plan))
            return (void)refused_tables_.emplace(plan.line, LineError(name + ": " + failure.what, name));
        Say(plan.line, name + ": rows set");
        ++tables_;
    }

    // Sends what was refused once more, as long as that helps.
    void SendRefusedValues()
    {
        for (size_t before = SIZE_MAX; !refused_.empty() && refused_.size() < before;)
        {
            std::vector<const FileValue*> again;
            for (const auto& [value, reason] : refused_) again.push_back(value);
            before = refused_.size();
            refused_.clear();
            SendValues(again);
        }
    }

    // What was refused, and how much was set.
    Outcome Finish() const
    {
        LineErrors refused = refused_tables_;
        for (const auto& [value, reason] : refused_)
            refused.emplace(value->line, LineError(reason, value->name, value->value));
        Outcome outcome({{"values_set", values_}, {"tables_set", tables_}, {"refused", refused.size()}},
                        Counted(values_, "value") + " and the rows of " + Counted(tables_, "table") + " set, " +
                            Counted(refused.size(), "line") + " refused\n");
        if (!refused.empty()) outcome.data.update(MistakesJson(refused));
        outcome.notes = LineTexts(file_, refused, kMistakesShown);
        if (!lost_.empty()) outcome.failure = {kSystemError, "import: " + lost_ + "; what was set before is listed"};
        return outcome;
    }

private:
    void SendOrHalve(FileValues values)
    {
        if (!lost_.empty()) return;
        const Response response = Call(options_, KOBD_SET, ItemsOf(values));
        const FileValue& first = *values[0];
        if (response.from_bus)
            lost_ = ResultText(response.code);
        else if (response.code == 0)
        {
            values_ += values.size();
            for (const FileValue* value : values) Say(value->line, value->name + " set");
        }
        else if (values.size() == 1)
            refused_[&first] = response.why;
        else
        {
            SendOrHalve(values.first(values.size() / 2));
            SendOrHalve(values.subspan(values.size() / 2));
        }
    }

    void Say(size_t line, const std::string& what) const
    {
        (void)Print(options_, {{}, LineTexts(file_, {{line, what}}).front() + "\n"});
    }

    const Options& options_;
    const InputFile& file_;
    std::string lost_;                                 // why the daemon was not reached any more
    std::map<const FileValue*, std::string> refused_;  // with the reason, in the order of the file
    LineErrors refused_tables_;
    size_t values_ = 0;
    size_t tables_ = 0;
};

bool HasOwnCheck(const FileValue* value) { return FindObject(value->name)->validator != nullptr; }

// Values with a check of their own look at each other, so they go first and together. A check that looks at rows, or at
// a value without a check, passes when it is made once more after those.
Outcome CarryOut(const Options& options, const InputFile& file, ImportPlan plan)
{
    std::stable_partition(plan.values.begin(), plan.values.end(), HasOwnCheck);
    Import import(options, file);
    import.SendValues(plan.values);
    for (const TablePlan& table : plan.tables) import.SendTable(table);
    import.SendRefusedValues();
    Outcome outcome = import.Finish();
    AddNotSaved(options, "set", &outcome);
    return outcome;
}

// A row in one line, as "table set" takes it.
std::string RowText(const std::string& table, const Assignments& values)
{
    std::string text = table;
    for (const Assignment& value : values)
        if (!value.value.empty()) text += " " + value.Text();
    return text;
}

Json CellsJson(const TableEntry& table, const Assignments& values, bool keep_empty = false)
{
    Json cells = Json::object();
    for (const auto& [column, value] : values)
        if (keep_empty || !value.empty())
            cells[column] = ValueJson(kobd_describe_column(table.name, column.c_str()), value);
    return cells;
}

// The rows that are set in place, by their index, with the cells that change.
Json RowsInPlace(const TablePlan& plan)
{
    Json rows = Json::array();
    for (size_t i = 0; i < std::min(plan.old.size(), plan.wanted.size()); ++i)
    {
        const Assignments now = Missing(plan.old[i], plan.wanted[i]);
        Assignments was;
        for (const Assignment& cell : now) was.push_back({cell.name, plan.old[i].ValueOf(cell.name)});
        if (!now.empty())
            rows.push_back({{"index", plan.old[i].index},
                            {"old", CellsJson(*plan.table, was, true)},
                            {"new", CellsJson(*plan.table, now, true)}});
    }
    return rows;
}

// The rows that go, with null as "new"; then those that come, without an index and with null as "old". A row that goes
// and comes again as it was is left out.
Json RowsReplaced(const TablePlan& plan)
{
    Json old = Json::array();
    Json wanted = Json::array();
    Json rows = Json::array();
    for (const Row& row : plan.old) old.push_back(CellsJson(*plan.table, ExportedValues(*plan.table, row)));
    for (const Assignments& row : plan.wanted) wanted.push_back(CellsJson(*plan.table, row));
    for (size_t i = 0; i < old.size(); ++i)
        if (std::ranges::find(wanted, old[i]) == wanted.end())
            rows.push_back({{"index", plan.old[i].index}, {"old", old[i]}, {"new", nullptr}});
    for (const Json& row : wanted)
        if (std::ranges::find(old, row) == old.end())
            rows.push_back({{"index", nullptr}, {"old", nullptr}, {"new", row}});
    return rows;
}

// What an import would change, and what of it only the daemon can judge. A row that only changes is one that goes and
// one that comes; one that goes and comes again as it was is not shown.
Outcome Differences(const ImportPlan& plan, const RouterState& router)
{
    Outcome outcome = {{{"objects", Json::object()}, {"tables", Json::object()}}, ""};
    Words open;
    for (const FileValue* value : plan.values)
    {
        const auto old = router.values.find(value->name);
        const bool known = old != router.values.end();
        if (HasOwnCheck(value)) open.push_back(value->name);
        outcome.data["objects"][value->name] = AddDifference(
            {value->name, value->value}, known ? std::optional(old->second) : std::nullopt, &outcome.text);
    }
    for (const TablePlan& table : plan.tables)
    {
        const std::string name = table.table->name;
        if (*table.table->validator != 0 && !table.wanted.empty()) open.push_back(name);
        outcome.data["tables"][name] = table.InPlace() ? RowsInPlace(table) : RowsReplaced(table);
        Words old;
        Words wanted;
        for (const Row& row : table.old) old.push_back(RowText(name, ExportedValues(*table.table, row)));
        for (const Assignments& row : table.wanted) wanted.push_back(RowText(name, row));
        for (const std::string& row : old)
            if (std::ranges::find(wanted, row) == wanted.end()) outcome.text += DiffLine('-', row);
        for (const std::string& row : wanted)
            if (std::ranges::find(old, row) == old.end()) outcome.text += DiffLine('+', row);
    }
    outcome.data["open"] = open;
    if (!open.empty()) outcome.status = kOpenStatus;
    if (!open.empty()) outcome.text += "the daemon decides on " + Joined(open) + ", whose checks only it can make\n";
    if (outcome.text.empty()) outcome.text = "the router has all of it already\n";
    return outcome;
}
}  // namespace

Outcome CommandImport(const Options& options, const Words& words)
{
    InputFile input;
    if (Failure failure = ReadInput(words[0], &input).In("import")) return failure;
    if (const size_t first = input.text.find_first_not_of(" \t\n");
        first != input.text.npos && input.text[first] == '{')
        return Failure{kInvalidArgument,
                       "import: " + input.name + " is JSON; import takes what kobctl export writes without --json"};
    SettingsFile file;
    RouterState router;
    LineErrors errors;
    ReadSettings(input.text, &file, &errors);
    if (Failure failure = ReadRouter(options, "import", &router); failure && errors.empty()) return failure;
    ImportPlan plan = PlanImport(file, router, &errors);
    if (errors.empty()) return options.dry_run ? Differences(plan, router) : CarryOut(options, input, std::move(plan));
    Outcome outcome = Failure{kInvalidArgument, "import: " + input.name + " has " + Counted(errors.size(), "mistake") +
                                                    "; nothing was changed"};
    outcome.notes = LineTexts(input, errors, kMistakesShown);
    outcome.particulars = MistakesJson(errors);
    return outcome;
}
}  // namespace kobd::client
