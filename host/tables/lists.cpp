// The lists of the host platform, made from the table rows of the catalogue.
#include "host/tables/lists.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "dictionary/catalogue/view.h"
#include "dictionary/row_field.h"
#include "host/sim/changes_made.h"
#include "host/state/report.h"
#include "host/tables/nvram_columns.h"
#include "host/tables/row_cells.h"
#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
constexpr int kInvokeFailed = 17;
constexpr const char* kPathColumn = "pPath";

// The lists of the platform, by number: the table row of each.
constexpr bool HasOwnList(const TableRow& table)
{
    return !table.daemon_list && std::string_view(table.list_of) == table.name;
}
constexpr auto kLists = []
{
    std::array<size_t, std::count_if(kTableRows.begin(), kTableRows.end(), HasOwnList)> rows{};
    size_t list = 0;
    for (size_t row = 0; row < kTableRows.size(); ++row)
        if (HasOwnList(kTableRows[row])) rows[list++] = row;
    return rows;
}();

// Whether clients can change the rows of the list.
constexpr bool IsChanged(size_t row)
{
    const auto defined = [row](Operation operation)
    { return kTableFunctions[row][std::countr_zero(unsigned{operation})].IsDefinedHere(); };
    return defined(kAdd) || defined(kDel) || defined(kSet);
}

struct FirstIndex
{
    std::string_view table;
    int32_t index;
};

// The row of APN n has index n - 1.
constexpr FirstIndex kFirstIndexes[] = {{"ApnConfigTable", 0}, {"ApnStatusTable", 0}};

int32_t FirstIndexOf(std::string_view table)
{
    for (const FirstIndex& first : kFirstIndexes)
        if (first.table == table) return first.index;
    return 1;
}

std::vector<List> MakeLists()
{
    std::vector<List> made;
    for (const size_t row : kLists)
    {
        const TableRow& table = kTableRows[row];
        made.push_back({row, table.name, &table.layout, IsChanged(row),
                        RowList(table.layout.row_size, table.max_rows, FirstIndexOf(table.name))});
    }
    return made;
}

int StorePath(const List& list, Row* row, const char* parent_path)
{
    if (const ColumnDef* column = FindColumn(*list.layout, kPathColumn))
    {
        const int result = TableFieldFromString(row->block.data(), *column, parent_path);
        ClearBehindTexts(*list.layout, row->block.data());
        return result;
    }
    row->parent_path = parent_path;
    return 0;
}

int HandOut(List& list, const Row* found, void* row)
{
    if (found == nullptr) return kIndexNotFound;
    memcpy(row, found->block.data(), found->block.size());
    if (const int code = FillFromNvram(list, row)) return code;
    const auto* simulated = SimulatedColumns(list, IndexOf(*found));
    if (simulated != nullptr)
        for (const ColumnDef* column : *simulated)  // nvram has another value
            CopyField(*column, found->block.data(), row);
    if (sim_marks.table[list.number] != 0) list.moved.HandOut(list.number, row, simulated);
    return 0;
}

int SetRow(List& in, int32_t index, const void* row)
{
    if (const int code = SimAskTable(in.number, SimOperation::kSet)) return code;
    const Row* found = in.rows.Find(index);
    if (found == nullptr) return kIndexNotFound;
    const char* given = static_cast<const char*>(row);
    std::vector<char> next(given, given + found->block.size());
    memcpy(next.data(), &index, sizeof index);
    in.moved.TakeBack(in.number, found->block.data(), next.data());
    Row* real = RowToSet(&in, index, &next);
    if (const int code = MoveToNvram(in, next.data())) return code;
    ClearBehindTexts(*in.layout, next.data());
    if (next != real->block)
    {
        in.changed.insert(index);
        real->block = std::move(next);
    }
    ShowAgain(&in, index);
    return 0;
}
}  // namespace

std::span<List> AllLists()
{
    static std::vector<List> lists = MakeLists();
    return lists;
}

List* FindList(std::string_view table)
{
    for (List& list : AllLists())
        if (list.table == table) return &list;
    return nullptr;
}

List* ListOfTable(size_t number) { return FindList(kTableRows[number].list_of); }

size_t ListOf(std::string_view function)
{
    for (size_t list = 0; list < kLists.size(); ++list)
        for (const NamedFunction& named : kTableFunctions[kLists[list]])
            if (named.IsDefinedHere() && named.name == function) return list;
    abort();  // every operation is made from a row of the same file
}

int ListAdd(size_t list, int32_t* index)
try
{
    List& in = AllLists()[list];
    if (const int code = SimAskTable(in.number, SimOperation::kAdd)) return code;
    const auto [mark, is_new] = in.changed.insert(in.rows.NextIndex());  // first: memory may run out
    const int result = in.rows.Add(index);
    if (result != 0 && is_new) in.changed.erase(mark);
    if (result == 0) RowIsReal(&in, *index);
    return result;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListAdd", kInvokeFailed);
}

int ListDel(size_t list, int32_t index)
try
{
    List& in = AllLists()[list];
    if (const int code = SimAskTable(in.number, SimOperation::kDel)) return code;
    if (in.rows.Find(index) == nullptr) return kIndexNotFound;
    in.changed.insert(index);
    RowIsReal(&in, index);
    return in.rows.Del(index);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListDel", kInvokeFailed);
}

int ListGet(size_t list, int32_t index, void* row)
try
{
    List& in = AllLists()[list];
    if (const int code = SimAskTable(in.number, SimOperation::kGet)) return code;
    return HandOut(in, in.rows.Find(index), row);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListGet", kInvokeFailed);
}

int ListSet(size_t list, int32_t index, const void* row)
try
{
    List& in = AllLists()[list];
    return NoteChange({SimKind::kTable, in.number}, index, SetRow(in, index, row));
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListSet", kInvokeFailed);
}

int ListSetParentPath(size_t list, int32_t index, const char* parent_path)
try
{
    List& in = AllLists()[list];
    Row* row = in.rows.Find(index);
    if (row == nullptr) return kIndexNotFound;
    in.changed.insert(index);
    const int result = StorePath(in, row, parent_path);
    if (Row* real = RealRow(in, index); real != nullptr && real != row)
        static_cast<void>(StorePath(in, real, parent_path));
    if (result != 0)  // nobody looks at the result
        kobd_log_print("ListSetParentPath", __LINE__, "%s row %d: parent path of %zu characters is too long", in.table,
                       index, strlen(parent_path));
    return result;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListSetParentPath", kInvokeFailed);
}

int ListNext(size_t list, int32_t previous, void* row)
try
{
    List& in = AllLists()[list];
    const Row* next = in.rows.Next(previous);
    int code = SimAskTable(in.number, SimOperation::kNext);
    if (code == 0 && next == nullptr) return kIndexNotFound;
    if (code == 0) code = HandOut(in, next, row);
    return code == 0 ? 0 : NoteChange({SimKind::kTable, in.number}, previous, code);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListNext", kInvokeFailed);
}
}  // namespace kobd::host
