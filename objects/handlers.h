// Handlers of the object requests. Each takes a message that the bus has checked for length and
// returns the send's error, or else the result code it answered.
#pragma once

#include "platform/message.h"

namespace kobd
{
int ReqObjGet(MessageHeader* request);        // objects/object_get.cpp
int ReqObjSet(MessageHeader* request);        // objects/object_set.cpp
int ReqObjSetSilent(MessageHeader* request);  // objects/object_set.cpp
int ReqUpdate(MessageHeader* request);        // objects/update.cpp
int ReqShow(MessageHeader* request);          // objects/show.cpp
}  // namespace kobd
