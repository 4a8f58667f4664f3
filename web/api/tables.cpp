// Tables: rows as columns and values.
#include "web/api/bus.h"
#include "web/api/describe.h"
#include "web/api/routes.h"
#include "web/api/row_changes.h"

namespace kobd::web
{
namespace
{
int32_t IndexIn(const std::string& text) { return NumberIn(text, "The index of a row", 0, INT32_MAX); }

std::string Shown(const char* table, const char* column, const char* value, bool secrets)
{
    const kobd_description* description = kobd_describe_column(table, column);
    return !secrets && description != nullptr && description->secret != 0 ? kMasked : value;
}

// Where rows go to that the library reads.
struct Reading
{
    const char* table;
    bool secrets;
    Json rows = Json::array();
    Json columns = Json::object();
};

Json RowsOf(const Call& call, const char* table)
{
    Reading reading = {table, call.Flag("secrets", false)};
    const auto take = [](void* context, const char*, int32_t index, const char* const* columns,
                         const char* const* values, size_t count)
    {
        auto& into = *static_cast<Reading*>(context);
        Json row = {{"index", index}, {"columns", Json::object()}};
        for (size_t i = 0; i < count; ++i)
            row["columns"][columns[i]] = Shown(into.table, columns[i], values[i], into.secrets);
        into.rows.push_back(std::move(row));
    };
    Demand(kobd_rows(Bus(), table, take, &reading));
    return reading.rows;
}

// Refuses, before a row is added, columns that the dictionary refuses.
void CheckColumns(const std::string& table, const Json& columns)
{
    for (const auto& [column, value] : columns.items())
    {
        const kobd_explanation* why = nullptr;
        const std::string text = ValueIn(value, table + " " + column);
        const int code = kobd_check_column(table.c_str(), column.c_str(), text.c_str(), &why);
        if (code == 0) continue;
        Problem problem = {422, why->text, MembersOf(*why)};
        problem.more["code"] = code;
        throw problem;
    }
}

// The columns as they were sent, for a row that cannot be read after it was set.
Json SentColumns(const Call& call, const std::string& table)
{
    Json columns = Json::object();
    for (const auto& [column, value] : call.body.items())
        columns[column] = Shown(table.c_str(), column.c_str(), ValueIn(value, column).c_str(), false);
    return columns;
}

void FillOrDelete(const std::string& table, int32_t index, const Json& columns)
{
    try
    {
        RowChanges changes;
        changes.Add(table, index, columns);
        changes.Store();
    }
    catch (Problem& problem)
    {
        const int code = kobd_row_del(Bus(), table.c_str(), index);
        problem.detail += code == 0 ? "; the new row was deleted again"
                                    : "; the new row " + std::to_string(index) + " is still there, without its values";
        throw;
    }
}
}  // namespace

Reply GetTables(const Call&)
{
    Json tables = Json::array();
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
        tables.push_back(DescriptionOf(*table));
    return {{{"tables", tables}}};
}

Reply GetTable(const Call& call)
{
    const kobd_table_description& table = TableCalled(call.names[0]);
    Json json = DescriptionOf(table);
    json["rows"] = RowsOf(call, table.name);
    return {json};
}

Reply GetRow(const Call& call)
{
    const kobd_table_description& table = TableCalled(call.names[0]);
    Reading reading = {table.name, call.Flag("secrets", false)};
    const auto take = [](void* context, const char* column, const char* value)
    {
        auto& into = *static_cast<Reading*>(context);
        into.columns[column] = Shown(into.table, column, value, into.secrets);
    };
    const int32_t index = IndexIn(call.names[1]);
    Demand(kobd_row_get(Bus(), table.name, index, take, &reading));
    return {{{"index", index}, {"columns", reading.columns}}};
}

Reply PostRow(const Call& call)
{
    const std::string table = TableCalled(call.names[0]).name;
    const std::string parent = call.Query("parent");
    CheckColumns(table, call.body);
    int32_t index = 0;
    Demand(kobd_row_add(Bus(), table.c_str(), call.HasQuery("parent") ? parent.c_str() : nullptr, &index));
    if (!call.body.empty()) FillOrDelete(table, index, call.body);
    return Saved({{{"index", index}}, 201, "/api/tables/" + table + "/" + std::to_string(index)});
}

Reply PatchTables(const Call& call)
{
    RowChanges changes;
    for (const auto& [table, of_table] : call.body.items())
    {
        if (!of_table.is_object()) throw Problem{422, table + ": a table is an object of rows by their index."};
        for (const auto& [index, columns] : of_table.items()) changes.Add(table, IndexIn(index), columns);
    }
    if (changes.Rows() == 0) throw Problem{422, "The body names no column."};
    changes.Store();
    return Saved({{{"rows", changes.Rows()}}});
}

Reply PatchRow(const Call& call)
{
    const kobd_table_description& table = TableCalled(call.names[0]);
    if (call.body.empty()) throw Problem{422, "The body names no column."};
    RowChanges changes;
    changes.Add(table.name, IndexIn(call.names[1]), call.body);
    changes.Store();
    try
    {
        return Saved(GetRow(call));
    }
    catch (const Problem&)  // the change was made all the same
    {
        return Saved({{{"index", IndexIn(call.names[1])}, {"columns", SentColumns(call, table.name)}}});
    }
}

Reply DeleteRow(const Call& call)
{
    Demand(kobd_row_del(Bus(), TableCalled(call.names[0]).name, IndexIn(call.names[1])));
    return Saved({{}, 204});
}
}  // namespace kobd::web
