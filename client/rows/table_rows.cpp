// Rows as the library reads them.
#include "client/rows/table_rows.h"

#include "client/dictionary/names.h"

namespace kobd::client
{
std::string Row::ValueOf(std::string_view column) const
{
    const Assignment* found = FindNamed(values, column);
    return found != nullptr ? found->value : "";
}

namespace
{
Response Dump(const Options& options, const Tables& tables, TableRows* rows)
{
    std::vector<const char*> names;
    for (const TableEntry* table : tables)
    {
        names.push_back(table->name);
        (*rows)[table->name] = {};
    }
    const auto keep = [](void* into, const char* table, int32_t index, const char* const* columns,
                         const char* const* values, size_t count)
    {
        Row& row = (*static_cast<TableRows*>(into))[table].emplace_back(Row{index});
        for (size_t i = 0; i < count; ++i) row.values.push_back({columns[i], values[i]});
    };
    return WithClient(options,
                      [&](kobd_client* client) { return kobd_rows_of(client, names.data(), names.size(), keep, rows); },
                      {names.begin(), names.end()});
}
}  // namespace

Response ReadOneRow(const Options& options, const std::string& table, Row* row)
{
    const auto keep = [](void* into, const char* column, const char* value) {
        static_cast<Row*>(into)->values.push_back({column, value});
    };
    return WithClient(options,
                      [&](kobd_client* client) { return kobd_row_get(client, table.c_str(), row->index, keep, row); },
                      {table});
}

Failure DumpRows(const Options& options, const std::string& what, const Tables& tables, TableRows* rows)
{
    const Response response = Dump(options, tables, rows);
    return response.code == 0 ? Failure() : Failure{response.code, what + ": " + response.why};
}
}  // namespace kobd::client
