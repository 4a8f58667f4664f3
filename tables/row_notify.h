// Tells the notification module that a row was added or deleted.
#pragma once

#include <cstdint>
#include <string_view>

#include "dictionary/records.h"

namespace kobd
{
// Sends event `id` (799 added, 800 deleted, 801 added under a parent) with the table's name, the
// row index and, when it is not nullptr, the parent path, for which TableRowNotifyFits must be true.
void TableRowNotify(uint16_t id, const TableDef& table, int32_t index, const char* parent_path = nullptr);

// Whether a notification can carry the parent path. Ask before adding the row, so that no row appears
// unannounced.
[[nodiscard]] bool TableRowNotifyFits(const TableDef& table, std::string_view parent_path);
}  // namespace kobd
