// Every list operation of the host platform, made from the table rows. A function that serves
// several tables is defined at the first row that names it and works on that row's list.
#include "dictionary/catalogue/table_operations.h"
#include "host/tables/lists.h"

using namespace kobd::host;

#define DEFINE_ADD(function)                          \
    int function(int32_t* index)                      \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListAdd(list, index);                  \
    }
#define DEFINE_DEL(function)                          \
    int function(int32_t index)                       \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListDel(list, index);                  \
    }
#define DEFINE_ROW_GET(function)                      \
    int function(int32_t index, void* row)            \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListGet(list, index, row);             \
    }
#define DEFINE_ROW_SET(function)                      \
    int function(int32_t index, const void* row)      \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListSet(list, index, row);             \
    }
#define DEFINE_PATH(function)                               \
    int function(int32_t index, const char* parent_path)    \
    {                                                       \
        static const size_t list = ListOf(#function);       \
        return ListSetParentPath(list, index, parent_path); \
    }
#define DEFINE_NEXT(function)                         \
    int function(int32_t previous, void* row)         \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListNext(list, previous, row);         \
    }
#include "dictionary/catalogue/operation_definitions.def"
