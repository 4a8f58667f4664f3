// Rows that are simulated, and how they really are.
#include "host/tables/simulated_rows.h"

#include <algorithm>
#include <cstring>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "dictionary/row_field.h"
#include "host/tables/lists.h"
#include "host/tables/nvram_columns.h"
#include "host/tables/row_cells.h"

namespace kobd::host
{
namespace
{
// Reads the columns into the row. 0, 2 or 12.
int ReadColumns(const List& list, const ColumnTexts& columns, Row* row, std::set<const ColumnDef*>* read)
{
    for (const auto& [name, text] : columns)
    {
        const ColumnDef* column = FindColumn(*list.layout, name);
        if (column == nullptr) return kElementNotFound;
        if (ReadCellInto(*list.layout, name, text, row) != ReadCell::kRead) return kInvalidArgument;
        read->insert(column);
    }
    return kSuccess;
}

void RaiseRealLast(List* list, int32_t index)
{
    std::optional<int32_t>& last = list->simulated.last_index;
    if (last) last = std::max(*last, index);
}

void End(List* list)
{
    for (auto& [index, simulated] : list->simulated.rows)
    {
        static_cast<void>(list->rows.Del(index));
        if (simulated.real) list->rows.Put(std::move(*simulated.real));
    }
    list->simulated.rows.clear();
}
}  // namespace

int SimulateAdd(List* list, const ColumnTexts& columns, int32_t* index)
{
    Row row = {std::vector<char>(list->rows.RowSize())};
    SimulatedRow simulated;
    if (const int code = ReadColumns(*list, columns, &row, &simulated.columns)) return code;
    // First: memory may run out.
    const auto [mark, is_new] = list->simulated.rows.emplace(list->rows.NextIndex(), std::move(simulated));
    const int32_t last = list->rows.LastIndex();
    if (const int code = list->rows.Add(index))
    {
        if (is_new) list->simulated.rows.erase(mark);
        return code;
    }
    memcpy(row.block.data(), index, sizeof *index);
    list->rows.Find(*index)->block = std::move(row.block);
    if (!list->simulated.last_index) list->simulated.last_index = last;
    return kSuccess;
}

int SimulateSet(List* list, int32_t index, const ColumnTexts& columns)
{
    Row* row = list->rows.Find(index);
    if (row == nullptr) return kIndexNotFound;
    Row next = *row;
    std::set<const ColumnDef*> read;
    if (const int code = ReadColumns(*list, columns, &next, &read)) return code;
    const auto [simulated, is_new] = list->simulated.rows.try_emplace(index);
    if (is_new) simulated->second.real = *row;
    simulated->second.columns.merge(read);
    *row = std::move(next);
    return kSuccess;
}

int SimulateDel(List* list, int32_t index)
{
    Row* row = list->rows.Find(index);
    if (row == nullptr) return kIndexNotFound;
    const auto [simulated, is_new] = list->simulated.rows.try_emplace(index);
    if (is_new) simulated->second.real = *row;
    simulated->second.columns.clear();
    if (!simulated->second.real) list->simulated.rows.erase(simulated);
    return list->rows.Del(index);
}

void EndSimulatedRows()
{
    for (List& list : AllLists()) End(&list);
}

Row* RealRow(List& list, int32_t index)
{
    const auto simulated = list.simulated.rows.find(index);
    if (simulated == list.simulated.rows.end()) return list.rows.Find(index);
    return simulated->second.real ? &*simulated->second.real : nullptr;
}

int32_t RealLastIndex(const List& list) { return list.simulated.last_index.value_or(list.rows.LastIndex()); }

const std::set<const ColumnDef*>* SimulatedColumns(const List& list, int32_t index)
{
    const auto simulated = list.simulated.rows.find(index);
    return simulated == list.simulated.rows.end() ? nullptr : &simulated->second.columns;
}

Row* RowToSet(List* list, int32_t index, std::vector<char>* next)
{
    Row* shown = list->rows.Find(index);
    const auto found = list->simulated.rows.find(index);
    if (found == list->simulated.rows.end()) return shown;
    SimulatedRow& simulated = found->second;
    if (!simulated.real)
    {
        RowIsReal(list, index);
        list->changed.insert(index);
        return shown;
    }
    std::vector<char> real = simulated.real->block;
    static_cast<void>(FillFromNvram(*list, real.data()));
    std::erase_if(simulated.columns,
                  [&](const ColumnDef* column) { return !IsSameField(*column, next->data(), shown->block.data()); });
    for (const ColumnDef* column : simulated.columns) CopyField(*column, real.data(), next->data());
    return &*simulated.real;
}

void ShowAgain(List* list, int32_t index)
{
    const auto found = list->simulated.rows.find(index);
    if (found == list->simulated.rows.end()) return;
    Row* shown = list->rows.Find(index);
    std::vector<char> block = found->second.real->block;
    for (const ColumnDef* column : found->second.columns) CopyField(*column, shown->block.data(), block.data());
    shown->block = std::move(block);
    if (found->second.columns.empty()) list->simulated.rows.erase(found);
}

void RowIsReal(List* list, int32_t index)
{
    RaiseRealLast(list, index);
    list->simulated.rows.erase(index);
}

std::vector<SimLine> SimulatedRowLines()
{
    std::vector<SimLine> lines;
    for (List& list : AllLists())
        for (const auto& [index, simulated] : list.simulated.rows)
        {
            const char* how = !simulated.real ? " added" : list.rows.Find(index) == nullptr ? " deleted" : " changed";
            lines.push_back({kTagTableName, list.table, "row", std::to_string(index) + how});
        }
    return lines;
}
}  // namespace kobd::host
