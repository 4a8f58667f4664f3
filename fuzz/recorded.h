// What the targets over the recording platform have in common.
#pragma once

#include <string>
#include <string_view>

#include "platform/message.h"

namespace kobd::fuzz
{
// The recording platform and shell as they were, and two rows of zeros in every table whose name
// occurs in `bytes`: those that a request can reach.
void ResetRecorded(std::string_view bytes);

// Calls the handler with that payload and holds what it did against what every handler promises:
// one whole reply to a request and none to an event; the result alone when it failed; then nothing
// set by a set request; nothing pending or staged left over; a commit only where one belongs.
// The result code.
int CallAndCheck(const MsgHandler& row, std::string_view payload);

// The handler of that name; ends the program when there is none.
const MsgHandler& Handler(std::string_view name);
}  // namespace kobd::fuzz
