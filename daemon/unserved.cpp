// Messages that are not served yet.
#include "daemon/unserved.h"

#include "daemon/log.h"
#include "daemon/result.h"

namespace kobd
{
#define DEFINE(name)                                                             \
    int name(MessageHeader*)                                                     \
    {                                                                            \
        LOG_ALWAYS(#name, "this build does not serve %s yet, no answer", #name); \
        return kMethodUnavailable;                                               \
    }
KOBD_UNSERVED(DEFINE)
#undef DEFINE
}  // namespace kobd
