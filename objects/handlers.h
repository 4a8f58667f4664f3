// Handlers of the object requests. Each takes a message whose length the bus has checked, and answers it.
// It returns the error of sending the answer, or else the result code that it answered.
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
