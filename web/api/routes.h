// The functions that answer, by theme; kRoutes says which address each has.
#pragma once

#include "web/server/route.h"

namespace kobd::web
{
Reply GetObjects(const Call& call);
Reply GetObject(const Call& call);
Reply PutObjects(const Call& call);
Reply PutObject(const Call& call);
Reply PostCheck(const Call& call);

Reply GetTables(const Call& call);
Reply GetTable(const Call& call);
Reply GetRow(const Call& call);
Reply PostRow(const Call& call);
Reply PatchTables(const Call& call);
Reply PatchRow(const Call& call);
Reply DeleteRow(const Call& call);

Reply GetEvents(const Call& call);

Reply GetSim(const Call& call);
Reply DeleteSim(const Call& call);
Reply PutSimObjects(const Call& call);
Reply PostSimFailure(const Call& call);
Reply PostSimDelay(const Call& call);
Reply PostSimRow(const Call& call);
Reply PatchSimRow(const Call& call);
Reply DeleteSimRow(const Call& call);
Reply PostSimEvent(const Call& call);
Reply PostScenario(const Call& call);
Reply DeleteScenario(const Call& call);

Reply GetHistory(const Call& call);
Reply PostUndo(const Call& call);

Reply GetOpenApi(const Call& call);
Reply GetPage(const Call& call);
}  // namespace kobd::web
