// The table records: names, row sizes and limits. Their columns and operations are not served yet,
// so every record has none.
#include <array>

#include "dictionary/records.h"

namespace kobd
{
namespace
{
constexpr size_t kTableCount = 103;
constinit std::array<PendingRowLinks, kTableCount> pending_rows;
constexpr size_t kFirst = __COUNTER__ + 1;

#define TABLE(name, row_size, max_rows) \
    TableDef{kKindTable, name, nullptr, nullptr, 0, row_size, &pending_rows[__COUNTER__ - kFirst], max_rows},
constexpr std::array<TableDef, kTableCount> kRecords = {{
#include "dictionary/catalogue/tables.def"
}};
#undef TABLE
static_assert(__COUNTER__ - kFirst == kTableCount, "one row a table, 103 in all");
}  // namespace

const std::span<const TableDef> kTables = kRecords;
}  // namespace kobd
