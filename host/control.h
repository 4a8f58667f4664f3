// Questions that only the imitated router answers.
#pragma once

#include "platform/message.h"

namespace kobd::host
{
// Answers a message of class 9; one with an unknown id with 1.
void AnswerControl(MessageHeader* request);
}  // namespace kobd::host
