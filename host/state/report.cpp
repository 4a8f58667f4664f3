// The one line about memory that ran out. It needs none itself.
#include "host/state/report.h"

#include <cerrno>

namespace kobd::host
{
int OutOfMemory(const char* function, int code)
{
    REPORT(function, "out of memory");
    errno = ENOMEM;
    return code;
}
}  // namespace kobd::host
