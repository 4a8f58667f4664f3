// The files of the page, which are part of the program, and the description of the interface.
#include "web/api/describe.h"
#include "web/api/routes.h"
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

Json SchemasOfDictionary()
{
    Json text = {{"type", "string"}};
    Json schemas = {{"Problem",
                     {{"type", "object"},
                      {"properties",
                       {{"title", text},
                        {"status", {{"type", "integer"}}},
                        {"detail", text},
                        {"object", text},
                        {"table", text},
                        {"column", text},
                        {"value", text},
                        {"reason", text},
                        {"right", text}}}}}};
    Json& objects = schemas["Objects"] = {{"type", "object"}, {"properties", Json::object()}};
    const kobd_description* object = nullptr;
    for (size_t i = 0; ObjectAt(i, &object); ++i)
        if (object != nullptr) objects["properties"][object->name] = SchemaOf(*object);
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
    {
        Json& row = schemas[table->name] = {{"type", "object"}, {"properties", Json::object()}};
        for (size_t c = 0; c < table->column_count; ++c)
            row["properties"][table->columns[c]->name] = SchemaOf(*table->columns[c]);
    }
    return schemas;
}

std::string OpenApi()
{
    Json api = {{"openapi", "3.1.0"}, {"info", {{"title", "kobd"}, {"version", KOBD_VERSION}}}};
    for (const Route& route : kRoutes)
    {
        std::string method = route.method;
        for (char& letter : method) letter = static_cast<char>(letter | 0x20);
        api["paths"][route.path][method] = OperationOf(route);
    }
    api["components"] = {{"schemas", SchemasOfDictionary()},
                         {"securitySchemes", {{"token", {{"type", "http"}, {"scheme", "bearer"}}}}}};
    api["security"] = Json::array({{{"token", Json::array()}}});
    return TextOf(api);
}
}  // namespace

Reply GetOpenApi(const Call&)
{
    static const std::string text = OpenApi();
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
