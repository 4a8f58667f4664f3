// kobctl show: every name, as the running daemon lists them.
#include "client/arguments/input_file.h"
#include "client/commands/commands.h"
#include "client/requests/dump_file.h"

namespace kobd::client
{
Outcome CommandShow(const Options& options, const Words&)
{
    const Response response = Call(options, KOBD_SHOW, {});
    if (Failure failure = FailureOf(response, "show")) return failure;
    Outcome outcome;
    if (const Failure failure = TakeDumpFile(response, &outcome.text))
        return Failure{failure.code, "show: " + failure.what};
    outcome.data = Json::array();
    for (const std::string_view name : LinesOf(outcome.text)) outcome.data.push_back(name);
    return outcome;
}
}  // namespace kobd::client
