// Stands in for validators that are not written yet: refuses every value and says so.
#include "daemon/log.h"
#include "daemon/result.h"
#include "dictionary/catalogue/accessors.h"

#define MISSING(validator)                                                                   \
    int validator(const char* value)                                                         \
    {                                                                                        \
        LOG_ALWAYS(#validator, "no such check in this build yet, value refused: %s", value); \
        return kobd::kMethodUnavailable;                                                     \
    }
#include "dictionary/catalogue/missing_validators.def"
#undef MISSING
