// Show: writes every name of the dictionary to a dump file. The payload is not looked at.
//   reply: dump file name (tag 2); the file is the client's to remove
#include <cstdio>

#include "daemon/base/dump_file.h"
#include "daemon/base/reply.h"
#include "dictionary/records.h"
#include "objects/handlers.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ReqKobShow";

bool WriteNames(FILE* file)
{
    for (const ObjDef& object : kObjects)
        if (fprintf(file, "%s\n", object.name) < 0) return false;
    for (const TableDef& table : kTables)
        if (fprintf(file, "%s\n", table.name) < 0) return false;
    return true;
}
}  // namespace

int ReqShow(MessageHeader* request)
{
    char name[kDumpFileName];
    FILE* file = DumpFileOpen(kFunction, name);
    Reply reply(request, kFunction);
    if (file == nullptr) return reply.SendResult(kSystemError);
    const int written = WriteNames(file) ? kSuccess : kSystemError;
    if (const int code = DumpFileClose(kFunction, file, name, written)) return reply.SendResult(code);
    reply.PushText(kTagValue, name);
    return reply.Send();
}
}  // namespace kobd
