// The dictionary over HTTP, as OpenAPI: the addresses, and a schema for every object and row.
#include "client/schema/parameters.h"
#include "client/schema/schema.h"
#include "client/schema/value_schema.h"

namespace kobd::client
{
namespace
{
constexpr const char* kSchemas = "components/schemas";

struct Route
{
    const char* method;
    const char* path;
    const char* name;  // of the operation
    const char* summary;
    const char* query;     // names of parameters, with a blank between them
    const char* body;      // schema of what is sent; nullptr: nothing is
    int status;            // of success
    const char* response;  // schema of what is answered; nullptr: nothing is
};

// clang-format off
constexpr Route kRoutes[] = {
    {"get",    "/api/objects",                "getObjects", "Objects whose name matches", "match search describe values secrets", nullptr, 200, "ObjectList"},
    {"put",    "/api/objects",                "setObjects", "Set several objects, all or none", "", "Objects", 200, "SetObjects"},
    {"get",    "/api/objects/{name}",         "getObject",  "An object with its value", "describe values secrets", nullptr, 200, "Object"},
    {"put",    "/api/objects/{name}",         "setObject",  "Set an object", "", "Value", 200, "SetObject"},
    {"post",   "/api/check",                  "check",      "What the dictionary says to values, without setting them", "", "Objects", 200, "Verdicts"},
    {"get",    "/api/tables",                 "getTables",  "All tables with their columns", "", nullptr, 200, "TableList"},
    {"patch",  "/api/tables",                 "setRows",    "Change rows of any tables, all or none", "", "Changes", 200, "Changed"},
    {"get",    "/api/tables/{table}",         "getTable",   "A table with its rows", "secrets", nullptr, 200, "Table"},
    {"post",   "/api/tables/{table}",         "addRow",     "Add a row", "parent", "Row", 201, "RowIndex"},
    {"get",    "/api/tables/{table}/{index}", "getRow",     "A row", "secrets", nullptr, 200, "IndexedRow"},
    {"patch",  "/api/tables/{table}/{index}", "setRow",     "Change a row", "", "Row", 200, "IndexedRow"},
    {"delete", "/api/tables/{table}/{index}", "deleteRow",  "Delete a row", "", nullptr, 204, nullptr},
};
// clang-format on

Json Content(const std::string& type, Json schema) { return {{type, {{"schema", std::move(schema)}}}}; }

Json OperationOf(const Route& route)
{
    Json operation = {{"operationId", route.name}, {"summary", route.summary}};
    if (Json parameters = ParametersOf(route.path, route.query); !parameters.empty())
        operation["parameters"] = std::move(parameters);
    if (route.body != nullptr)
        operation["requestBody"] = {{"required", true},
                                    {"content", Content("application/json", Reference(kSchemas, route.body))}};
    Json success = {{"description", "It is done."}};
    if (route.response != nullptr)
        success["content"] = Content("application/json", Reference(kSchemas, route.response));
    Json& responses = operation["responses"];
    responses[std::to_string(route.status)] = std::move(success);
    if (route.status == 204)
        responses["200"] = {{"description", "It is done, and was not saved."},
                            {"content", Content("application/json", Reference(kSchemas, "NotSaved"))}};
    for (const char* kind : {"4XX", "5XX"}) responses[kind] = {{"$ref", "#/components/responses/Refused"}};
    return operation;
}

Json EventsOperation()
{
    const Route route = {"get",   "/api/events", "getEvents", "Changes as they are announced",
                         "token", nullptr,       200,         nullptr};
    return {{"operationId", route.name},
            {"summary", route.summary},
            {"parameters", ParametersOf(route.path, route.query)},
            {"responses",
             {{"200",
               {{"description", "Server-sent events without end."},
                {"content", Content("text/event-stream", {{"type", "string"}})}}},
              {"4XX", {{"$ref", "#/components/responses/Refused"}}},
              {"5XX", {{"$ref", "#/components/responses/Refused"}}}}}};
}

Json Paths()
{
    Json paths = Json::object();
    for (const Route& route : kRoutes) paths[route.path][route.method] = OperationOf(route);
    paths["/api/events"]["get"] = EventsOperation();
    return paths;
}

Json ObjectOf(Json properties) { return {{"type", "object"}, {"properties", std::move(properties)}}; }

Json ListOf(const char* name, Json items)
{
    return ObjectOf({{name, {{"type", "array"}, {"items", std::move(items)}}}});
}

Json Rows()
{
    Json any = Json::array();
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
        any.push_back(Reference(kSchemas, std::string("row.") + table->name));
    return {{"anyOf", std::move(any)}};
}

// The answer to a change: with these, where it was not saved.
Json AnswerOf(Json properties)
{
    properties["saved"] = {{"type", "boolean"}};
    properties["not_saved"] = {{"type", "string"}, {"description", "why"}};
    return ObjectOf(std::move(properties));
}

// What requests and answers are made of.
Json Frames()
{
    const Json text = {{"type", "string"}};
    const Json number = {{"type", "integer"}};
    const Json texts = {{"type", "array"}, {"items", text}};
    const Json value = {{"type", {"string", "integer", "boolean"}}};
    Json schemas = Json::object();
    schemas["Value"] = {{"type", "object"}, {"properties", {{"value", value}}}, {"required", {"value"}}};
    schemas["Object"] = ObjectOf({{"name", text}, {"value", text}, {"meaning", text}, {"unit", text}});
    schemas["ObjectList"] = ListOf("objects", Reference(kSchemas, "Object"));
    schemas["SetObject"] = AnswerOf({{"name", text}, {"value", text}, {"old", text}});
    schemas["SetObjects"] = AnswerOf({{"objects", {{"type", "array"}, {"items", Reference(kSchemas, "SetObject")}}}});
    schemas["Verdict"] = ObjectOf({{"name", text},
                                   {"value", text},
                                   {"verdict", {{"type", "string"}, {"enum", {"ok", "open", "refused"}}}},
                                   {"reason", text},
                                   {"right", text}});
    schemas["Verdicts"] = ListOf("results", Reference(kSchemas, "Verdict"));
    schemas["Row"] = Rows();
    schemas["NotSaved"] = AnswerOf(Json::object());
    schemas["RowIndex"] = AnswerOf({{"index", number}});
    schemas["IndexedRow"] = AnswerOf({{"index", number}, {"columns", Reference(kSchemas, "Row")}});
    schemas["Table"] = ObjectOf({{"name", text},
                                 {"meaning", text},
                                 {"maxRows", number},
                                 {"rows", {{"type", "array"}, {"items", Reference(kSchemas, "IndexedRow")}}}});
    schemas["TableList"] = ListOf("tables", Reference(kSchemas, "Table"));
    schemas["Changes"] = {
        {"type", "object"},
        {"description", "Rows by their index, in tables by their name."},
        {"additionalProperties", {{"type", "object"}, {"additionalProperties", Reference(kSchemas, "Row")}}}};
    schemas["Changed"] = AnswerOf({{"rows", number}});
    schemas["Problem"] = ObjectOf({{"title", text},
                                   {"status", number},
                                   {"detail", text},
                                   {"name", text},
                                   {"object", text},
                                   {"table", text},
                                   {"index", number},
                                   {"column", text},
                                   {"value", text},
                                   {"reason", text},
                                   {"right", text},
                                   {"code", number},
                                   {"allow", text},
                                   {"restored", texts},
                                   {"left", texts}});
    schemas["Problem"]["required"] = {"title", "status", "detail"};
    return schemas;
}

// What only OpenAPI has. Numbers are taken as text too, and answered so.
void AddMore(const kobd_description& description, Json* schema)
{
    if (description.is_number != 0) (*schema)["type"] = {"boolean", "integer", "string"};
    if (description.unit != nullptr) (*schema)["x-unit"] = description.unit;
    if (description.secret != 0) (*schema)["format"] = "password";
}

Json Schemas()
{
    Json schemas = Frames();
    Json objects = ObjectSchemas();
    for (const auto& [name, schema] : objects.items()) AddMore(*kobd_describe(name.c_str()), &objects[name]);
    schemas["Objects"] = ObjectOf(std::move(objects));
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
    {
        Json columns = ColumnSchemas(*table);
        for (size_t c = 0; c < table->column_count; ++c) AddMore(*table->columns[c], &columns[table->columns[c]->name]);
        Json& row = schemas[std::string("row.") + table->name] = ObjectOf(std::move(columns));
        row["title"] = table->name;
        if (table->meaning != nullptr) row["description"] = table->meaning;
    }
    return schemas;
}
}  // namespace

std::string OpenApi()
{
    Json refused = {{"description", "It was refused or failed; the answer says why."},
                    {"content", Content("application/problem+json", Reference(kSchemas, "Problem"))}};
    const Json api = {{"openapi", "3.1.0"},
                      {"info", {{"title", "The objects and tables of a router"}, {"version", KOBD_VERSION}}},
                      {"servers", {{{"url", "/"}}}},
                      {"security", {{{"token", Json::array()}}}},
                      {"paths", Paths()},
                      {"components",
                       {{"schemas", Schemas()},
                        {"responses", {{"Refused", std::move(refused)}}},
                        {"securitySchemes", {{"token", {{"type", "http"}, {"scheme", "bearer"}}}}}}}};
    return api.dump(1) + "\n";
}
}  // namespace kobd::client
