// Handlers of the table requests. Each takes a message that the bus has checked for length and
// returns the send's error, or else the result code it answered.
#pragma once

#include "platform/message.h"

namespace kobd
{
int ReqTableMaxRow(MessageHeader* request);        // tables/row_count.cpp
int ReqTableElementCount(MessageHeader* request);  // tables/row_count.cpp
int ReqTableAdd(MessageHeader* request);           // tables/row_add_delete.cpp
int REQSubTableAdd(MessageHeader* request);        // tables/row_add_delete.cpp
int ReqTableDel(MessageHeader* request);           // tables/row_add_delete.cpp
int ReqTableGet(MessageHeader* request);           // tables/table_get.cpp
int ReqTableSet(MessageHeader* request);           // tables/table_set.cpp
int ReqTableSetSilent(MessageHeader* request);     // tables/table_set.cpp
int ReqTableDump(MessageHeader* request);          // tables/table_dump.cpp
}  // namespace kobd
