// Stands in for checks and lists that are not written yet: refuses everything and says so.
#include <cstdint>

#include "daemon/log.h"
#include "daemon/result.h"
#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/table_operations.h"

#define REFUSE(function, what)                                                \
    {                                                                         \
        LOG_ALWAYS(#function, "no such " what " in this build yet, refused"); \
        return kobd::kMethodUnavailable;                                      \
    }
#define MISSING(validator) int validator(const char*) REFUSE(validator, "check")
#include "dictionary/catalogue/missing.def"

#define ADD(function) int function(int32_t*) REFUSE(function, "list")
#define DEL(function) int function(int32_t) REFUSE(function, "list")
#define GET(function) int function(int32_t, void*) REFUSE(function, "list")
#define SET(function) int function(int32_t, const void*) REFUSE(function, "list")
#define NEXT(function) int function(int32_t, void*) REFUSE(function, "list")
#define TABLE(...)
#define SAME_LIST(...)
#define OWN_LIST(name, layout, max_rows, ...) __VA_ARGS__
#include "dictionary/catalogue/tables.def"
