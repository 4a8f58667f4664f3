// List operations of the platform that checks call directly. `row` is a block of the table's row
// size; its first 32-bit word is the row index.
#pragma once

#include <cstdint>

extern "C"
{
    // Copies the APN profile `index`, counted from 0, into `row` (a row of ApnConfigTable). 0, or
    // another code when there is no such profile; then the row's content has no meaning.
    int getApnInstance(int32_t index, void* row);
}
