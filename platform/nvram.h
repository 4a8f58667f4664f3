// The non-volatile store: short texts by key, shared with the router's other processes and durable
// as soon as they are set.
#pragma once

#include <cstddef>

extern "C"
{
    // Copies the value of `key` into `value` (`size` bytes, zero byte included; a longer value is
    // cut). An unknown key leaves the empty text. 0, or -1 for an unknown key. Two names for one
    // thing: the platform has both.
    int nv_get(const char* key, char* value, size_t size);
    int nvram_cpy(const char* key, char* value, size_t size);

    // Stores `value` under `key`. 0, or -1 when it could not be written.
    int nvram_set(const char* key, const char* value);
}
