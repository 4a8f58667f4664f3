// kobctl schema [--json-schema | --openapi | --yang]: the dictionary for machines, without the daemon.
#include "client/schema/schema.h"
#include "client/commands/commands.h"

namespace kobd::client
{
Outcome CommandSchema(const Options& options, const Words&)
{
    if (options.json_schema + options.openapi + options.yang > 1)
        return Failure{kWrongUse, "schema takes one of --json-schema, --openapi and --yang"};
    if (options.json) return Failure{kWrongUse, "schema takes no --json: each of its forms is only one"};
    return {{}, options.yang ? YangModule() : options.openapi ? OpenApi() : JsonSchema()};
}
}  // namespace kobd::client
