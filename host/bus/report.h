// A line of the bus library to the daemon's log.
#pragma once

// The daemon exports its log; the other programs that use the bus have none and do not receive here.
extern "C" int kobd_log_print(const char* function, int line, const char* format, ...)
    __attribute__((weak, format(printf, 3, 4)));

#define REPORT(...)                                                                  \
    do                                                                               \
    {                                                                                \
        if (kobd_log_print != nullptr) kobd_log_print("Bus", __LINE__, __VA_ARGS__); \
    } while (false)
