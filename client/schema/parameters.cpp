#include "client/schema/parameters.h"

namespace kobd::client
{
namespace
{
struct Query
{
    const char* name;
    const char* description;
    const char* flag;  // without it: "0" or "1"; nullptr: it is a text
};

constexpr Query kQueries[] = {
    {"match", "A pattern for names, such as wifi*. With several, a name matches one of them.", nullptr},
    {"search", "Words, all of which are in the name or the meaning.", nullptr},
    {"parent", "The path of the object below which the row is added.", nullptr},
    {"token", "The token, for a client that cannot send a header field.", nullptr},
    {"describe", "0: without the description.", "1"},
    {"values", "0: without the value.", "1"},
    {"secrets", "1: secret values are shown.", "0"},
};

Json PathParameter(const std::string& name)
{
    Json schema = {{"type", name == "index" ? "integer" : "string"}};
    if (name == "index") schema["minimum"] = 0;
    return {{"name", name}, {"in", "path"}, {"required", true}, {"schema", std::move(schema)}};
}

Json QueryParameter(const Query& query)
{
    Json parameter = {{"name", query.name}, {"in", "query"}, {"description", query.description}};
    Json& schema = parameter["schema"] = {{"type", "string"}};
    if (query.flag != nullptr) schema.update({{"enum", {"0", "1"}}, {"default", query.flag}});
    if (query.name != std::string("match")) return parameter;
    schema = {{"type", "array"}, {"items", {{"type", "string"}}}};
    parameter.update({{"style", "form"}, {"explode", true}});
    return parameter;
}
}  // namespace

Json ParametersOf(const std::string& path, const std::string& query)
{
    Json parameters = Json::array();
    for (size_t open = 0; (open = path.find('{', open)) != std::string::npos; ++open)
        parameters.push_back(PathParameter(path.substr(open + 1, path.find('}', open) - open - 1)));
    const std::string names = " " + query + " ";
    for (const Query& one : kQueries)
        if (names.find(std::string(" ") + one.name + " ") != std::string::npos)
            parameters.push_back(QueryParameter(one));
    return parameters;
}
}  // namespace kobd::client
