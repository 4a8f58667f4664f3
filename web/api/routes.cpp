// Every address of the gateway. /openapi.json lists them.
#include "web/api/routes.h"

namespace kobd::web
{
constexpr const char* kAssignments = "names and values: {\"webHttpPort\": \"8080\"}";
constexpr const char* kColumns = "columns and values: {\"Enable\": 1}";

const std::vector<Route> kRoutes = {
    {"GET", "/api/objects/{name}", GetObject, "An object: its description and its value", "describe values secrets",
     nullptr},
    {"PUT", "/api/objects/{name}", PutObject, "Set an object", "", "the value: {\"value\": \"8080\"}"},
    {"GET", "/api/objects", GetObjects,
     "Objects whose name matches one of the patterns (match=wifi*, more than once) or whose name or meaning has all "
     "words (search=)",
     "match search describe values secrets", nullptr},
    {"PUT", "/api/objects", PutObjects, "Set several objects, all or none", "", kAssignments},
    {"POST", "/api/check", PostCheck, "What the dictionary says to values, without setting them", "", kAssignments},

    {"GET", "/api/tables", GetTables, "All tables: their descriptions", "", nullptr},
    {"PATCH", "/api/tables", PatchTables, "Change rows of any tables, all or none", "",
     "tables, rows and columns: {\"DnsClientTable\": {\"1\": {\"Enable\": 0}}}"},
    {"GET", "/api/tables/{table}", GetTable, "A table: its description and its rows", "secrets", nullptr},
    {"POST", "/api/tables/{table}", PostRow, "Add a row, below the object of parent= where that is given", "parent",
     kColumns},
    {"GET", "/api/tables/{table}/{index}", GetRow, "A row", "secrets", nullptr},
    {"PATCH", "/api/tables/{table}/{index}", PatchRow, "Change a row", "", kColumns},
    {"DELETE", "/api/tables/{table}/{index}", DeleteRow, "Delete a row", "", nullptr},

    {"GET", "/api/events", GetEvents, "Changes as they happen, as server-sent events", "token", nullptr},

    {"GET", "/api/sim", GetSim, "What the imitated router simulates, and its scenarios", "secrets", nullptr},
    {"DELETE", "/api/sim", DeleteSim, "End all that is simulated", "", nullptr},
    {"PUT", "/api/sim/objects", PutSimObjects, "Show these values, of read-only objects too", "announce", kAssignments},
    {"POST", "/api/sim/failures", PostSimFailure, "Let an operation fail", "",
     "{\"name\": \"webHttpPort\", \"operation\": \"set\", \"code\": 17, \"times\": 1}"},
    {"POST", "/api/sim/delays", PostSimDelay, "Let the operations of an object or table take so long", "",
     "{\"name\": \"webHttpPort\", \"milliseconds\": 500, \"times\": 1}"},
    {"POST", "/api/sim/tables/{table}", PostSimRow, "Show a row more", "", kColumns},
    {"PATCH", "/api/sim/tables/{table}/{index}", PatchSimRow, "Show a row otherwise", "", kColumns},
    {"DELETE", "/api/sim/tables/{table}/{index}", DeleteSimRow, "Show a row no more", "", nullptr},
    {"POST", "/api/sim/events", PostSimEvent, "Send the daemon a network event", "",
     "{\"name\": \"NetworkDown\", \"text\": \"\"}"},
    {"POST", "/api/sim/scenarios/{name}", PostScenario, "Play a scenario; its steps are events", "speed", nullptr},
    {"DELETE", "/api/sim/scenarios", DeleteScenario, "Stop the scenario that plays", "", nullptr},

    {"GET", "/api/history", GetHistory, "What was changed, when, and by which program", "match count", nullptr},
    {"POST", "/api/undo", PostUndo, "Take back what the last commands changed", "",
     "how many, and the newest commit that you have seen: {\"count\": 1, \"newest\": 12}"},

    {"GET", "/openapi.json", GetOpenApi, "This description", "", nullptr},
    {"GET", "/", GetPage, "The page", "", nullptr},
    {"GET", "/{file}", GetPage, "A file of the page", "", nullptr},
};
}  // namespace kobd::web
