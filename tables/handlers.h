// Handlers of the table requests. Each takes a message whose length the bus has checked, and answers it.
// It returns the error of sending the answer, or else the result code that it answered.
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
