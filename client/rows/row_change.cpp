// Changes of rows, sent through the library.
#include "client/rows/row_change.h"

#include <algorithm>
#include <csignal>
#include <memory>

#include "client/dictionary/column_value.h"
#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
struct FreeChanges
{
    void operator()(kobd_changes* changes) const { kobd_changes_free(changes); }
};

// NULL without memory, or when a text is too long for a change file.
std::unique_ptr<kobd_changes, FreeChanges> Build(const RowChanges& changes)
{
    std::unique_ptr<kobd_changes, FreeChanges> built(kobd_changes_new());
    for (const RowChange& change : changes)
        for (const auto& [column, value] : change.values)
            if (built != nullptr && kobd_changes_add(built.get(), change.row.table->name, change.row.index,
                                                     column.c_str(), value.c_str()) != KOBD_SUCCESS)
                built.reset();
    return built;
}

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

void RemoveAndEnd(int number)
{
    kobd_remove_change_files();
    signal(number, SIG_DFL);
    raise(number);
}

// While this object exists, a signal that ends the program removes the change file. A signal that the caller of the
// program ignores stays ignored.
class ChangeFilesGoWithUs
{
public:
    ChangeFilesGoWithUs() { Handle(RemoveAndEnd); }
    ~ChangeFilesGoWithUs() { Handle(SIG_DFL); }
    ChangeFilesGoWithUs(const ChangeFilesGoWithUs&) = delete;
    ChangeFilesGoWithUs& operator=(const ChangeFilesGoWithUs&) = delete;

private:
    static void Handle(void (*handler)(int))
    {
        for (const int number : kEndingSignals)
            if (signal(number, handler) == SIG_IGN) signal(number, SIG_IGN);
    }
};
}  // namespace

Failure ReadColumnValue(const std::string& word, Assignments* values)
{
    if (ReadAssignment(word, values))
        return IsGivenTwice(*values) ? Failure{kWrongUse, values->back().name + " is given twice"} : Failure();
    return {kWrongUse, "'" + word + "' is neither COLUMN=VALUE nor a table" + DidYouMean(word, AllNames(kTableRows))};
}

Failure ReadChanges(const Words& words, RowChanges* changes)
{
    for (size_t i = 0; i < words.size();)
    {
        RowAddress row = {nullptr, kNoIndexYet};
        if (Failure failure = ReadTable(words[i++], &row.table)) return failure;
        if (Failure failure = ReadRowIndex(i < words.size() ? words[i++] : "", &row.index)) return failure;
        auto change = std::ranges::find(*changes, row, &RowChange::row);
        if (change == changes->end()) change = changes->insert(change, {row});
        for (; i < words.size() && FindTable(words[i]) == nullptr; ++i)
            if (Failure failure = ReadColumnValue(words[i], &change->values)) return failure;
    }
    return {};
}

Failure CheckColumns(const RowChange& change)
{
    for (const auto& [column, value] : change.values)
    {
        if (const Fault fault = JudgeCell(*change.row.table, column, value))
            return FailureWithCode(fault.code, change.row.Text() + ": " + fault.Text(column, value));
    }
    return {};
}

RowAddresses RowsOf(const RowChanges& changes)
{
    RowAddresses rows;
    for (const RowChange& change : changes) rows.push_back(change.row);
    return rows;
}

Failure SendChanges(const Options& options, const RowChanges& changes)
{
    if (changes.empty()) return {};
    const auto built = Build(changes);
    if (built == nullptr) return {kSystemError, "a value is too long for a change file"};
    // A command checks what a person gives; the old values of rows may be what the dictionary refuses.
    const int flags = KOBD_UNCHECKED | (options.silent ? KOBD_SILENT : 0);
    Words tables;
    for (const RowChange& change : changes) tables.emplace_back(change.row.table->name);
    const ChangeFilesGoWithUs guard;
    const Response response = WithClient(
        options, [&](kobd_client* client) { return kobd_changes_set(client, built.get(), flags); }, tables);
    if (response.from_bus && response.code != kSystemError) return FailureOfChange(response, "table set");
    return response.code == 0 ? Failure() : Failure{response.code, response.why};
}

Failure AddRow(const Options& options, const TableEntry& table, int32_t* index)
{
    const char* parent = options.parent.empty() ? nullptr : options.parent.c_str();
    const Response response = WithClient(
        options, [&](kobd_client* client) { return kobd_row_add(client, table.name, parent, index); }, {table.name});
    if (response.from_bus || response.too_large) return FailureOfChange(response, "table add");
    if (response.code == kSystemError) return {response.code, "table add: " + response.why};
    return response.code == 0 ? Failure() : Failure{response.code, response.why};
}

Failure DeleteRow(const Options& options, const RowAddress& row)
{
    const Response response =
        WithClient(options, [&](kobd_client* client) { return kobd_row_del(client, row.table->name, row.index); },
                   {row.table->name});
    if (response.from_bus) return FailureOfChange(response, "table del");
    return response.code == 0 ? Failure() : Failure{response.code, response.why};
}
}  // namespace kobd::client
