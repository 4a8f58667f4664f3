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
#define DEFINE_GET(function)                          \
    int function(int32_t index, void* row)            \
    {                                                 \
        static const size_t list = ListOf(#function); \
        return ListGet(list, index, row);             \
    }
#define DEFINE_SET(function)                          \
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
#define DEFINE_NOTHING(...)

// SHARED(f) makes two arguments of one, which shifts DEFINE_NOTHING to the third place.
#define SHARED(function) function, shared
#define THIRD(first, second, third, ...) third
#define PICK(define, ...) THIRD(__VA_ARGS__, DEFINE_NOTHING, define, unused)
#define ADD(...) PICK(DEFINE_ADD, __VA_ARGS__)(__VA_ARGS__)
#define DEL(...) PICK(DEFINE_DEL, __VA_ARGS__)(__VA_ARGS__)
#define GET(...) PICK(DEFINE_GET, __VA_ARGS__)(__VA_ARGS__)
#define SET(...) PICK(DEFINE_SET, __VA_ARGS__)(__VA_ARGS__)
#define PATH(...) PICK(DEFINE_PATH, __VA_ARGS__)(__VA_ARGS__)
#define NEXT(...) PICK(DEFINE_NEXT, __VA_ARGS__)(__VA_ARGS__)
#define VALIDATE(...)
#define TABLE(name, layout, max_rows, ...) __VA_ARGS__
#define OWN_LIST(...)
#define SAME_LIST(...)
#include "dictionary/catalogue/tables.def"
