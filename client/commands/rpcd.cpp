// kobctl rpcd list, and kobctl rpcd call METHOD: the interface that the router's rpcd asks its executable plugins by.
// rpcd hands on what is printed when it is a JSON object, and looks at no exit status. So a refusal is an object too.
#include "client/arguments/input_file.h"
#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/rpcd/errors.h"
#include "client/rpcd/methods.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
Json Signatures()
{
    Json methods = Json::object();
    for (const Method& method : Methods())
    {
        Json& takes = methods[method.name] = Json::object();
        for (const Argument& argument : method.takes) takes[argument.name] = Example(argument.kind);
    }
    return methods;
}

Json CallMethod(const Options& options, const std::string& name)
{
    const Method* method = FindNamed(Methods(), name);
    if (method == nullptr)
        return ErrorReply({kNotFound, "there is no method " + name + DidYouMean(name, AllNames(Methods()))});
    InputFile input;
    Json arguments;
    if (Failure failure = ReadInput("-", &input)) return ErrorReply(failure);
    if (Failure failure = ReadArguments(input.text, method->takes, &arguments))
        return ErrorReply({failure.code, name + ": " + failure.what});
    return method->run(options, arguments);
}
}  // namespace

Outcome CommandRpcd(const Options& options, const Words& words)
{
    const bool list = words[0] == "list" && words.size() == 1;
    if (!list && (words[0] != "call" || words.size() != 2)) return Failure{kWrongUse, "rpcd takes list or call METHOD"};
    const Json reply = list ? Signatures() : CallMethod(options, words[1]);
    Options as_json = options;
    as_json.json = true;
    (void)Print(as_json, {reply, ""});
    Outcome outcome;
    outcome.status = !list && reply.contains("error") ? 1 : 0;
    return outcome;
}
}  // namespace kobd::client
