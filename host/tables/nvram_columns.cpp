// Columns of rows whose values lie in nvram.
#include "host/tables/nvram_columns.h"

#include <array>
#include <cerrno>
#include <string>

#include "dictionary/row_field.h"
#include "host/tables/row_cells.h"
#include "platform/nvram.h"

namespace kobd::host
{
namespace
{
constexpr int kInvokeFailed = 17;

struct NvramColumn
{
    const char* table;
    const char* column;
    const char* before;  // the text of the key before the number, which is the row's index plus 1
    const char* behind;  // and behind it
};

constexpr NvramColumn kNvramColumns[] = {{"ApnConfigTable", "ApnEnable", "apn", "_enable"}};

std::string KeyOf(const NvramColumn& in_nvram, const void* row)
{
    return in_nvram.before + std::to_string(int64_t{RowIndex(row)} + 1) + in_nvram.behind;
}
}  // namespace

int FillFromNvram(const List& list, void* row)
{
    for (const NvramColumn& in_nvram : kNvramColumns)
    {
        if (list.table != std::string_view(in_nvram.table)) continue;
        const ColumnDef* column = FindColumn(*list.layout, in_nvram.column);
        std::array<char, kFieldTextMax> value;
        if (column == nullptr) continue;
        if (nv_get(KeyOf(in_nvram, row).c_str(), value.data(), column->length) == 0)
            static_cast<void>(TableFieldFromString(row, *column, value.data()));  // cut to fit by the store
        else if (errno == ENOMEM)  // a row without it would be set without it
            return kInvokeFailed;
    }
    return 0;
}

int MoveToNvram(const List& list, void* row)
{
    for (const NvramColumn& in_nvram : kNvramColumns)
    {
        if (list.table != std::string_view(in_nvram.table)) continue;
        const ColumnDef* column = FindColumn(*list.layout, in_nvram.column);
        if (column == nullptr) continue;
        std::array<char, kFieldTextMax> buffer;
        const std::string value(FieldText(row, *column, buffer));
        if (nvram_set(KeyOf(in_nvram, row).c_str(), value.c_str()) != 0) return kInvokeFailed;
        static_cast<void>(TableFieldFromString(row, *column, ""));
    }
    return 0;
}
}  // namespace kobd::host
