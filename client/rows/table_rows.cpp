// Rows as the library reads them.
#include "client/rows/table_rows.h"

#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
std::string Row::ValueOf(std::string_view column) const
{
    const Assignment* found = FindNamed(values, column);
    return found != nullptr ? found->value : "";
}

namespace
{
// The table whose next row the imitated router could not give; the empty text when there is none. The daemon ends such
// a table without a word.
std::string CutTable(kobd_client* client)
{
    constexpr int kLongestMs = 1000;  // the imitated router answers at once, another one never
    kobd_client_set_timeout(client, kLongestMs);
    kobd_item item{};
    const bool cut = kobd_host_call(client, KOBD_HOST_FAILED, nullptr) == 0 && kobd_reply_next(client, &item) == 1;
    return cut && item.tag == KOBD_TAG_TABLE_NAME && item.text != nullptr ? item.text : "";
}

Response Dump(const Options& options, const Tables& tables, TableRows* rows, std::string* cut)
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
                      [&](kobd_client* client)
                      {
                          const int code = kobd_rows_of(client, names.data(), names.size(), keep, rows);
                          if (code == 0) *cut = CutTable(client);
                          return code;
                      });
}
}  // namespace

Response ReadOneRow(const Options& options, const std::string& table, Row* row)
{
    const auto keep = [](void* into, const char* column, const char* value) {
        static_cast<Row*>(into)->values.push_back({column, value});
    };
    return WithClient(options,
                      [&](kobd_client* client) { return kobd_row_get(client, table.c_str(), row->index, keep, row); });
}

Failure DumpRows(const Options& options, const std::string& what, const Tables& tables, TableRows* rows)
{
    std::string cut;
    const Response response = Dump(options, tables, rows, &cut);
    if (response.code != 0) return {response.code, what + ": " + response.why};
    return cut.empty() ? Failure() : Failure{kSystemError, what + ": the router could not read all rows of " + cut};
}
}  // namespace kobd::client
