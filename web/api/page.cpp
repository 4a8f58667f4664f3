// The files of the page, which are part of the program, and the description of the interface.
#include <sstream>

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

// What kobctl says about the parameter, or no more than its name.
Json ParameterOf(const Json& known, const std::string& name, const char* in)
{
    for (const Json& one : known)
        if (one["name"] == name && one["in"] == in) return one;
    return {{"name", name}, {"in", in}, {"required", in[0] == 'p'}, {"schema", {{"type", "string"}}}};
}

Json ParametersOf(const Route& route, const Json& known)
{
    Json parameters = Json::array();
    const std::string path = route.path;
    for (size_t open = 0; (open = path.find('{', open)) != path.npos; ++open)
        parameters.push_back(ParameterOf(known, path.substr(open + 1, path.find('}', open) - open - 1), "path"));
    std::istringstream names(route.query);
    for (std::string name; names >> name;) parameters.push_back(ParameterOf(known, name, "query"));
    return parameters;
}

Json OperationOf(const Route& route)
{
    Json operation = {{"summary", route.summary}};
    if (!std::string_view(route.path).starts_with("/api/")) operation["security"] = Json::array();  // needs no token
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
        path[method]["parameters"] = ParametersOf(route, path[method].value("parameters", Json::array()));
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
