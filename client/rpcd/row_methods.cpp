// Rows of tables for rpcd, over the commands of kobctl table.
#include "client/rpcd/row_methods.h"

#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/rpcd/errors.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
// "TABLE [INDEX] COLUMN=VALUE...", as the commands take it.
Words RowWords(const Json& arguments)
{
    Words words = {TextOf(arguments, "table")};
    if (const auto index = NumberOf(arguments, "index")) words.push_back(std::to_string(*index));
    for (const Assignment& value : ValuesOf(arguments)) words.push_back(value.Text());
    return words;
}

// "TABLE INDEX" at the beginning of the failure, else TABLE. A new row has its index from there alone.
std::string RowIn(const Failure& failure, const std::string& table)
{
    if (!failure.what.starts_with(table + " ")) return table;
    const size_t end = failure.what.find_first_not_of("0123456789", table.size() + 1);
    return end == table.size() + 1 ? table : failure.what.substr(0, end);
}

// A failure about a row begins with its address. One value follows where a column refuses it, all of them where the
// check of the row does.
std::vector<AskedValue> AskedColumns(const Failure& failure, const TableEntry& table, const Assignments& values)
{
    std::vector<AskedValue> asked;
    if (values.empty()) return asked;
    const std::string row = RowIn(failure, table.name);
    AskedValue together = {.prefix = row, .name = "", .right = RuleOf(table.validator)};
    for (const Assignment& value : values)
    {
        const ColumnDef* column = FindColumn(table, value.name);
        if (column != nullptr) asked.push_back({row + ": " + value.Text(), value.name, value.value, Takes(*column)});
        together.prefix += " " + value.Text();
    }
    if (values.size() == 1)
    {
        together.name = values[0].name;
        together.value = values[0].value;
    }
    asked.push_back(together);
    return asked;
}

void HideSecrets(Json* rows)
{
    for (Json& row : *rows)
        for (const std::string_view column : kSecretColumns) row.erase(std::string(column));
}

// The reply with one member of the outcome's data.
Json PartOf(Outcome outcome, const char* name, const std::vector<AskedValue>& asked)
{
    if (!outcome.failure) outcome.data = Json(outcome.data[name]);
    return ReplyOf(outcome, name, asked);
}

// Changes a row by a command of kobctl table. A column that the table does not have is refused before.
Json ChangeRow(Outcome (*command)(const Options&, const Words&), const Options& options, const Json& arguments,
               const char* name)
{
    const TableEntry* table = FindTable(TextOf(arguments, "table"));
    const Assignments values = ValuesOf(arguments);
    for (const Assignment& value : values)
        if (table != nullptr && FindColumn(*table, value.name) == nullptr)
        {
            const Fault fault = JudgeCell(*table, value.name, value.value);
            return ErrorReply({fault.code, value.Text() + ": " + fault.reason},
                              {{value.Text(), value.name, value.value}});
        }
    const Outcome outcome = command(options, RowWords(arguments));
    return PartOf(outcome, name,
                  table != nullptr ? AskedColumns(outcome.failure, *table, values) : std::vector<AskedValue>());
}
}  // namespace

Json RowsReply(const Options& options, const Json& arguments, bool secrets)
{
    const Words words = RowWords(arguments);
    Outcome outcome = words.size() > 1 ? TableGet(options, words) : TableDump(options, words);
    if (!outcome.failure) outcome.data = Json(outcome.data[words[0]]);
    if (!secrets) HideSecrets(&outcome.data);
    return ReplyOf(outcome, "rows");
}

Json ReadTableRows(const Options& options, const Json& arguments) { return RowsReply(options, arguments, false); }

Json SetRow(const Options& options, const Json& arguments)
{
    Options set = options;
    set.silent = FlagOf(arguments, "silent");
    return ChangeRow(TableSet, set, arguments, "set");
}

Json AddNewRow(const Options& options, const Json& arguments)
{
    Options add = options;
    add.parent = TextOf(arguments, "parent");
    return ChangeRow(TableAdd, add, arguments, "index");
}

Json DeleteOneRow(const Options& options, const Json& arguments)
{
    return PartOf(TableDel(options, RowWords(arguments)), "deleted", {});
}

Json CheckRow(const Options& options, const Json& arguments)
{
    if (!arguments.contains("index")) return ErrorReply({kInvalidArgument, "index is missing, the row's number"});
    return ReplyOf(CommandCheck(options, RowWords(arguments)), "checks");
}
}  // namespace kobd::client
