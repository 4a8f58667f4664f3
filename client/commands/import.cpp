// kobctl import FILE: checks the whole file, then sets what differs from the router.
#include <algorithm>
#include <cstdio>

#include "client/arguments/assignment.h"
#include "client/arguments/input_file.h"
#include "client/commands/commands.h"
#include "client/requests/log_window.h"
#include "client/rows/import_rows.h"
#include "client/state/import_plan.h"
#include "daemon/base/result.h"
#include "platform/message.h"

namespace kobd::client
{
namespace
{
// "1 line", "2 lines".
std::string Counted(size_t count, const char* word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

using FileValues = std::vector<const FileValue*>;

// One run of the import: what it sent, what was set and what was refused.
class Import
{
public:
    Import(const Options& options, std::string file) : options_(options), file_(std::move(file)) {}

    // Sends the values, as many together as fit one request. Where a request is refused, its halves:
    // so that checks across values see as much as possible at once, and the wrong one is found. What
    // stays refused is returned.
    FileValues SendValues(const FileValues& values)
    {
        FileValues refused;
        refusals_.clear();
        for (size_t from = 0; from < values.size() && lost_.empty();)
        {
            size_t count = 1;
            while (from + count < values.size() &&
                   Fits({values.begin() + At(from), values.begin() + At(from + count + 1)}))
                ++count;
            SendOrHalve({values.begin() + At(from), values.begin() + At(from + count)}, &refused);
            from += count;
        }
        return refused;
    }

    void SendTable(const TablePlan& plan)
    {
        if (!lost_.empty()) return;
        const std::string name = plan.table->name;
        if (const std::string why = ReplaceRows(options_, plan); !why.empty())
            table_refusals_.push_back({plan.line, name + ": " + why});
        else
            Say(plan.line, name + ": rows set");
        tables_ += table_refusals_.empty() || table_refusals_.back().line != plan.line;
    }

    // Says what was refused and counts what was set. The exit status.
    int Finish()
    {
        std::vector<LineError> errors = refusals_;
        errors.insert(errors.end(), table_refusals_.begin(), table_refusals_.end());
        for (const auto& [line, what] : errors) SayError(file_ + ":" + std::to_string(line) + ": " + what);
        if (options_.json)
            printf("{\"values_set\":%zu,\"tables_set\":%zu,\"refused\":%zu}\n", values_, tables_, errors.size());
        else
            printf("%s and the rows of %s set, %s refused\n", Counted(values_, "value").c_str(),
                   Counted(tables_, "table").c_str(), Counted(errors.size(), "line").c_str());
        if (!lost_.empty()) return Fail(options_, kSystemError, "import: " + lost_ + "; what was set before is listed");
        return errors.empty() ? 0 : 1;
    }

private:
    static ptrdiff_t At(size_t place) { return static_cast<ptrdiff_t>(place); }

    static Items ItemsOf(const FileValues& values)
    {
        std::vector<Assignment> pairs;
        for (const FileValue* value : values) pairs.push_back({value->name, value->value});
        return SetItems(pairs);
    }

    static bool Fits(const FileValues& values)
    {
        const auto bytes = ItemBytes(ItemsOf(values));
        return bytes && bytes->size() <= kPayloadMax;
    }

    static std::string RefusalOf(const FileValue& value, const LogWindow& log)
    {
        const std::string why = WhyRefused(log.Lines(), value.name, value.value);
        return value.name + "=" + value.value + ": " + (why.empty() ? "" : why + "; ") + "it takes " +
               Accepts(*FindObject(value.name));
    }

    void SendOrHalve(const FileValues& values, FileValues* refused)
    {
        if (!lost_.empty()) return;
        const LogWindow log;
        const Response response = Call(kRequestSet, ItemsOf(values), options_.timeout_ms);
        if (response.code == 0)
        {
            values_ += values.size();
            for (const FileValue* value : values) Say(value->line, value->name + " set");
        }
        else if (response.from_bus)
            lost_ = ResultText(response.code);
        else if (values.size() == 1)
        {
            const FileValue& value = *values[0];
            refusals_.push_back({value.line, RefusalOf(value, log) + ": " + CodeText(response.code)});
            refused->push_back(&value);
        }
        else
        {
            const auto middle = values.begin() + At(values.size() / 2);
            SendOrHalve({values.begin(), middle}, refused);
            SendOrHalve({middle, values.end()}, refused);
        }
    }

    void Say(size_t line, const std::string& what) const
    {
        if (!options_.json) printf("%s:%zu: %s\n", file_.c_str(), line, what.c_str());
    }

    const Options& options_;
    std::string file_;
    std::string lost_;  // why the daemon was not reached any more
    std::vector<LineError> refusals_;
    std::vector<LineError> table_refusals_;
    size_t values_ = 0;
    size_t tables_ = 0;
};

bool HasOwnCheck(const FileValue* value) { return FindObject(value->name)->validator != nullptr; }

int RefuseFile(const Options& options, const std::string& name, std::vector<LineError> errors)
{
    std::stable_sort(errors.begin(), errors.end(), [](const auto& a, const auto& b) { return a.line < b.line; });
    for (const auto& [line, what] : errors) SayError(name + ":" + std::to_string(line) + ": " + what);
    return Fail(options, kInvalidArgument,
                "import: " + name + " has " + Counted(errors.size(), "mistake") + "; nothing was changed");
}
}  // namespace

int CommandImport(const Options& options, const Words& words)
{
    InputFile input;
    if (const std::string error = ReadInput(words[0], &input); !error.empty())
        return Fail(options, kSystemError, "import: " + error);
    SettingsFile file;
    std::vector<LineError> errors;
    ReadSettings(input.text, &file, &errors);
    RouterState router;
    if (errors.empty())
        if (const int status = ReadRouter(options, "import", &router)) return status;
    ImportPlan plan = errors.empty() ? PlanImport(file, router, &errors) : ImportPlan{};
    if (!errors.empty()) return RefuseFile(options, input.name, std::move(errors));

    // FileValues with a check of their own look at each other, so they go first and together; a check that
    // looks at rows, or at a value without a check, passes when it is made once more after those.
    std::stable_partition(plan.values.begin(), plan.values.end(), HasOwnCheck);
    Import import(options, input.name);
    FileValues refused = import.SendValues(plan.values);
    for (const TablePlan& table : plan.tables) import.SendTable(table);
    for (size_t before = SIZE_MAX; !refused.empty() && refused.size() < before;)
    {
        before = refused.size();
        refused = import.SendValues(refused);
    }
    return import.Finish();
}
}  // namespace kobd::client
