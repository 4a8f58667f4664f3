// What depends on the target, and the end of the program at a broken promise.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "fuzz/target.h"

namespace kobd::fuzz
{
const char* const kRegressions = KOBD_REGRESSIONS;

void Broken(const char* file, int line, const char* format, ...)
{
    fprintf(stderr, "%s:%d: broken promise: ", file, line);
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
    fputc('\n', stderr);
    abort();
}
}  // namespace kobd::fuzz
