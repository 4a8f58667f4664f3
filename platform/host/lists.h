// The lists behind the tables of the host platform. A list is known by the number of its row in
// the catalogue; rows have a stable index, the lowest free one from 1 on when they are added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kobd::host
{
// The number of the list that names `function` as one of its operations.
size_t ListOf(std::string_view function);

// Behind the operations. 0; 13 no such row; 15 the list is full.
int ListAdd(size_t list, int32_t* index);
int ListDel(size_t list, int32_t index);
int ListGet(size_t list, int32_t index, void* row);
int ListSet(size_t list, int32_t index, const void* row);
int ListSetParentPath(size_t list, int32_t index, const char* parent_path);
int ListNext(size_t list, int32_t previous, void* row);
}  // namespace kobd::host
