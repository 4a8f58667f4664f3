// How far a client's last request came: how much it set, and what the router could not set then, or not read where it
// listed rows. The daemon answers a code alone, and ends a table of a dump without one; a client asks for this.
#pragma once

#include <cstdint>

#include "host/sim/simulator.h"

namespace kobd::host
{
struct FailedChange
{
    SimTarget target = {};  // an object, or a table
    int32_t index = 0;      // of its row
    int32_t changed = 0;    // objects or rows that the request had set before
};

// A request of this process and connection begins: what its last one did is forgotten.
void ChangesBegin(uint32_t process, int32_t connection);

// The request in hand has set an object or row, or has failed to with `code`; or it failed to read the row behind
// `index`. Returns the code.
int NoteChange(SimTarget target, int32_t index, int code);

// Where the last request of this process and connection failed; nullptr when it did not, or when those of 64 other
// clients have failed since.
const FailedChange* LastFailedChange(uint32_t process, int32_t connection);
}  // namespace kobd::host
