// The lists of the host platform: rows as blocks of bytes, in the order in which they came.
#include "platform/host/lists.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <unordered_map>
#include <vector>

#include "dictionary/catalogue/layouts.h"

namespace kobd::host
{
namespace
{
constexpr int kIndexNotFound = 13;
constexpr int kTableFull = 15;

struct ListDef
{
    const char* name;
    const RowLayout* layout;
    uint32_t max_rows;
    std::initializer_list<const char*> operations;
};

#define ADD(...) NAME(__VA_ARGS__)
#define DEL ADD
#define GET ADD
#define SET ADD
#define PATH ADD
#define NEXT ADD
#define NAME(...) FIRST_IF_ONE(__VA_ARGS__, SKIP, KEEP, )(__VA_ARGS__)
#define FIRST_IF_ONE(first, second, pick, ...) pick
#define KEEP(function) #function,
#define SKIP(function, shared)
#define SHARED(function) function, shared
#define VALIDATE(...)
#define ALL(stem) ADD(stem##Add) DEL(stem##Del) GET(stem##Get) SET(stem##Set) PATH(stem##SetPPath) NEXT(stem##Next)
#define TABLE(name, layout, max_rows, ...) {name, &layout, max_rows, {__VA_ARGS__}},
#define OWN_LIST(...)
#define SAME_LIST(...)
const ListDef kLists[] = {
#include "dictionary/catalogue/tables.def"
};

using Row = std::vector<char>;

std::array<std::vector<Row>, std::size(kLists)> lists;

int32_t IndexOf(const Row& row)
{
    int32_t index;
    memcpy(&index, row.data(), sizeof index);
    return index;
}

Row* Find(size_t list, int32_t index)
{
    for (Row& row : lists[list])
        if (IndexOf(row) == index) return &row;
    return nullptr;
}
}  // namespace

size_t ListOf(std::string_view function)
{
    for (size_t list = 0; list < std::size(kLists); ++list)
        for (const char* operation : kLists[list].operations)
            if (function == operation) return list;
    abort();  // every operation is made from a row of the same file
}

int ListAdd(size_t list, int32_t* index)
{
    if (lists[list].size() >= kLists[list].max_rows) return kTableFull;
    *index = 1;
    while (Find(list, *index) != nullptr) ++*index;
    Row row(kLists[list].layout->row_size);
    memcpy(row.data(), index, sizeof *index);
    lists[list].push_back(std::move(row));
    return 0;
}

int ListDel(size_t list, int32_t index)
{
    return std::erase_if(lists[list], [index](const Row& row) { return IndexOf(row) == index; }) != 0 ? 0
                                                                                                      : kIndexNotFound;
}

int ListGet(size_t list, int32_t index, void* row)
{
    const Row* found = Find(list, index);
    if (found == nullptr) return kIndexNotFound;
    memcpy(row, found->data(), found->size());
    return 0;
}

int ListSet(size_t list, int32_t index, const void* row)
{
    Row* found = Find(list, index);
    if (found == nullptr) return kIndexNotFound;
    memcpy(found->data(), row, found->size());
    memcpy(found->data(), &index, sizeof index);
    return 0;
}

int ListSetParentPath(size_t list, int32_t index, const char*)
{
    return Find(list, index) != nullptr ? 0 : kIndexNotFound;
}

int ListNext(size_t list, int32_t previous, void* row)
{
    const auto& rows = lists[list];
    auto next = rows.begin();
    if (previous != -1)
    {
        next = std::find_if(rows.begin(), rows.end(), [previous](const Row& one) { return IndexOf(one) == previous; });
        if (next != rows.end()) ++next;
    }
    if (next == rows.end()) return kIndexNotFound;
    memcpy(row, next->data(), next->size());
    return 0;
}
}  // namespace kobd::host
