// Stands in for checks that are not written yet: refuses everything and says so.
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
