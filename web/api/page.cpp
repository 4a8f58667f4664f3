// The files of the page, which are part of the program, and the description of the interface.
#include "web/api/kobctl.h"
#include "web/api/routes.h"
#include "web/api/services.h"
#include "web/page_files.h"

namespace kobd::web
{
namespace
{
const char* TypeOf(std::string_view file)
{
    if (file.ends_with(".html")) return "text/html; charset=utf-8";
    if (file.ends_with(".css")) return "text/css; charset=utf-8";
    if (file.ends_with(".svg")) return "image/svg+xml";
    if (file.ends_with(".js")) return "text/javascript; charset=utf-8";
    return "text/plain; charset=utf-8";
}

Json ParametersOf(const Route& route)
{
    Json parameters = Json::array();
    const auto add = [&](const std::string& name, const char* in) {
        parameters.push_back(
            {{"name", name}, {"in", in}, {"required", in[0] == 'p'}, {"schema", {{"type", "string"}}}});
    };
    const std::string path = route.path;
    for (size_t open = 0; (open = path.find('{', open)) != path.npos; ++open)
        add(path.substr(open + 1, path.find('}', open) - open - 1), "path");
    std::string_view query = route.query;
    while (!query.empty())
    {
        const size_t blank = std::min(query.find(' '), query.size());
        add(std::string(query.substr(0, blank)), "query");
        query.remove_prefix(std::min(blank + 1, query.size()));
    }
    return parameters;
}

Json OperationOf(const Route& route)
{
    Json operation = {{"summary", route.summary}, {"parameters", ParametersOf(route)}};
    if (route.body != nullptr)
        operation["requestBody"] = {{"required", true},
                                    {"description", route.body},
                                    {"content", {{"application/json", {{"schema", {{"type", "object"}}}}}}}};
    const Json problem = {{"$ref", "#/components/schemas/Problem"}};
    operation["responses"] = {
        {"2XX", {{"description", "It worked"}}},
        {"default",
         {{"description", "It did not, and this is why"}, {"content", {{kProblemType, {{"schema", problem}}}}}}}};
    return operation;
}

// What kobctl says about objects and tables, and the other routes of the gateway.
std::string OpenApi(const std::string& kobctl)
{
    Json api = Json::parse(RunKobctlForText(kobctl, {"schema", "--openapi"}));
    for (const Route& route : kRoutes)
    {
        std::string method = route.method;
        for (char& letter : method) letter = static_cast<char>(letter | 0x20);
        Json& path = api["paths"][route.path];
        if (!path.contains(method)) path[method] = OperationOf(route);
    }
    return TextOf(api);
}
}  // namespace

Reply GetOpenApi(const Call& call)
{
    static const std::string text = OpenApi(call.services.kobctl);
    Reply reply;
    reply.page = text;
    reply.type = "application/json";
    return reply;
}

Reply GetPage(const Call& call)
{
    const std::string_view wanted = call.names.empty() ? "index.html" : std::string_view(call.names[0]);
    for (const PageFile& file : kPageFiles)
    {
        if (file.name != wanted) continue;
        Reply reply;
        reply.page = file.content;
        reply.type = TypeOf(file.name);
        return reply;
    }
    throw Problem{404, "There is nothing at " + call.request.path + "; /openapi.json lists what there is."};
}
}  // namespace kobd::web
