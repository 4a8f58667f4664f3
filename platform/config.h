// The configuration store: texts by dotted keys ("cellular.roaming.enable").
#pragma once

#include <cstddef>

extern "C"
{
    // Copies the value of `key` into `value`, at most `size` bytes with the zero byte. An unknown
    // key leaves the empty text. 0, or -1 for an unknown key.
    int kob_get_config(const char* key, char* value, size_t size);

    // Stores `value` under `key`. 0, or -1 when it could not be written.
    int kob_set_config(const char* key, const char* value);
}
