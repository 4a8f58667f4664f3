// The daemon's side of the taps: copies of all messages in shared memory that clients have made. No tap can delay the
// daemon. Any thread may call these.
#pragma once

#include <cstdint>

#include "platform/message.h"

namespace kobd::host
{
// Answers a message of class 9 that asks for a tap: 0; 2 its memory is none, another user's or of no fitting size;
// 15 there are 64 taps.
void AnswerTap(const MessageHeader* request);

// Around the handling of a message of this sender. `connection` tells its connections apart.
void TapReceived(const MessageHeader* message, uint32_t sender, int32_t connection);
void TapHandled();

// A reply, or a message to a module.
void TapAnswered(const MessageHeader* message);
void TapSent(const MessageHeader* message);

// The name of the program that sent the message in hand, as the system has it; empty when it is not known.
const char* SenderProgram(uint32_t sender, int32_t connection);
}  // namespace kobd::host
