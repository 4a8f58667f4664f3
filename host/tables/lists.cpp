// The lists of the host platform, made from the table rows of the catalogue.
#include "host/tables/lists.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>

#include "dictionary/catalogue/layouts.h"
#include "dictionary/row_field.h"
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

struct Operation
{
    const char* function;
    bool changes;  // clients change rows through it
};

struct ListDef
{
    const char* table;
    const RowLayout* layout;
    uint32_t max_rows;
    std::initializer_list<Operation> operations;
};

// The functions that this row is the first to name.
#define ADD(...) NAME(true, __VA_ARGS__)
#define DEL ADD
#define SET ADD
#define GET(...) NAME(false, __VA_ARGS__)
#define PATH GET
#define NEXT GET
#define NAME(changes, ...) FIRST_IF_ONE(__VA_ARGS__, SKIP, KEEP, )(changes, __VA_ARGS__)
#define FIRST_IF_ONE(first, second, pick, ...) pick
#define KEEP(changes, function) {#function, changes},
#define SKIP(changes, function, shared)
#define SHARED(function) function, shared
#define VALIDATE(...)
#define ALL(stem) ADD(stem##Add) DEL(stem##Del) GET(stem##Get) SET(stem##Set) PATH(stem##SetPPath) NEXT(stem##Next)
#define TABLE(name, layout, max_rows, ...) {name, &layout, max_rows, {__VA_ARGS__}},
#define OWN_LIST(...)
#define SAME_LIST(...)
const ListDef kLists[] = {
#include "dictionary/catalogue/tables.def"
};

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
    for (const ListDef& def : kLists)
    {
        const bool kept = std::any_of(def.operations.begin(), def.operations.end(),
                                      [](const Operation& operation) { return operation.changes; });
        made.push_back(
            {def.table, def.layout, kept, RowList(def.layout->row_size, def.max_rows, FirstIndexOf(def.table))});
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

int HandOut(const List& list, const Row* found, void* row)
{
    if (found == nullptr) return kIndexNotFound;
    memcpy(row, found->block.data(), found->block.size());
    return FillFromNvram(list, row);
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

size_t ListOf(std::string_view function)
{
    for (size_t list = 0; list < std::size(kLists); ++list)
        for (const Operation& operation : kLists[list].operations)
            if (function == operation.function) return list;
    abort();  // every operation is made from a row of the same file
}

int ListAdd(size_t list, int32_t* index)
try
{
    List& in = AllLists()[list];
    const auto [mark, is_new] = in.changed.insert(in.rows.NextIndex());  // first: memory may run out
    const int result = in.rows.Add(index);
    if (result != 0 && is_new) in.changed.erase(mark);
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
    if (in.rows.Find(index) == nullptr) return kIndexNotFound;
    in.changed.insert(index);
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
    Row* found = in.rows.Find(index);
    if (found == nullptr) return kIndexNotFound;
    const char* given = static_cast<const char*>(row);
    std::vector<char> next(given, given + found->block.size());
    memcpy(next.data(), &index, sizeof index);
    if (const int code = MoveToNvram(in, next.data())) return code;
    ClearBehindTexts(*in.layout, next.data());
    if (next == found->block) return 0;
    in.changed.insert(index);
    found->block = std::move(next);
    return 0;
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
    return HandOut(in, in.rows.Next(previous), row);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ListNext", kInvokeFailed);
}
}  // namespace kobd::host
