// Telling what failed, from code that is part of the daemon and of other programs too.
#pragma once

#include <cstdio>

// The daemon exports its log. A program that has none reports on standard error.
extern "C" int kobd_log_print(const char* function, int line, const char* format, ...)
    __attribute__((weak, format(printf, 3, 4)));

#define REPORT(function, ...)                                  \
    do                                                         \
    {                                                          \
        if (kobd_log_print != nullptr)                         \
            kobd_log_print(function, __LINE__, __VA_ARGS__);   \
        else                                                   \
            fprintf(stderr, __VA_ARGS__), fputc('\n', stderr); \
    } while (false)

namespace kobd::host
{
// What a function says and answers that ran out of memory. Whoever calls it from the daemon knows no exceptions:
// each function that the daemon calls catches std::bad_alloc and returns this.
// Sets errno to ENOMEM and returns `code`.
int OutOfMemory(const char* function, int code);
}  // namespace kobd::host
