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

// A failure about the row begins with its address, or with one value behind it.
std::vector<AskedValue> AskedColumns(const Json& arguments)
{
    const TableEntry* table = FindTable(TextOf(arguments, "table"));
    const auto index = NumberOf(arguments, "index");
    const std::string row = TextOf(arguments, "table") + (index ? " " + std::to_string(*index) : "");
    std::vector<AskedValue> asked;
    for (const Assignment& value : ValuesOf(arguments))
    {
        const ColumnDef* column = table != nullptr ? FindColumn(*table, value.name) : nullptr;
        const std::string right = column != nullptr ? Takes(*column) : "";
        asked.push_back({row + ": " + value.Text(), value.name, value.value, right});
        asked.push_back({row + " " + value.Text(), value.name, value.value, ""});
    }
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
    return PartOf(TableSet(set, RowWords(arguments)), "set", AskedColumns(arguments));
}

Json AddNewRow(const Options& options, const Json& arguments)
{
    Options add = options;
    add.parent = TextOf(arguments, "parent");
    return PartOf(TableAdd(add, RowWords(arguments)), "index", AskedColumns(arguments));
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
