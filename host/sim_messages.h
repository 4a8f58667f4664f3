// The messages of class 9 about the simulator.
#pragma once

#include "daemon/base/tlv.h"
#include "platform/message.h"

namespace kobd::host
{
// Does what the message asks. Returns the result, kNotFound for an id that is not about the simulator; `answer` gets
// the items of the answer where it is 0. May run out of memory.
int AnswerSimulator(const MessageHeader* request, TlvWriter* answer);
}  // namespace kobd::host
