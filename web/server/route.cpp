#include "web/server/route.h"

namespace kobd::web
{
namespace
{
std::string_view TakePart(std::string_view* path)
{
    const size_t slash = path->find('/', 1);
    const std::string_view part = path->substr(0, slash);
    path->remove_prefix(part.size());
    return part;
}

bool Matches(std::string_view pattern, std::string_view path, std::vector<std::string>* names)
{
    names->clear();
    while (!pattern.empty() && !path.empty())
    {
        const std::string_view wanted = TakePart(&pattern);
        const std::string_view given = TakePart(&path);
        const bool any = wanted.starts_with("/{");
        if (any ? given.size() < 2 : wanted != given) return false;
        if (any) names->emplace_back(given.substr(1));
    }
    return pattern.empty() && path.empty();
}
}  // namespace

const Route& FindRoute(const std::string& method, const std::string& path, std::vector<std::string>* names)
{
    std::string allowed;
    for (const Route& route : kRoutes)
    {
        if (!Matches(route.path, path, names)) continue;
        if (method == route.method || (method == "HEAD" && route.method == std::string("GET"))) return route;
        allowed += (allowed.empty() ? "" : ", ") + std::string(route.method);
    }
    if (allowed.empty()) throw Problem{404, "There is nothing at " + path + "; /openapi.json lists what there is."};
    throw Problem{405, path + " takes " + allowed + ", not " + method + ".", {{"allow", allowed}}};
}

void CheckQuery(const Route& route, const httplib::Request& request)
{
    constexpr std::string_view kFlags = " describe values secrets announce ";
    const auto has = [](std::string_view list, const std::string& name)
    { return (" " + std::string(list) + " ").find(" " + name + " ") != std::string::npos; };
    for (const auto& [name, value] : request.params)
    {
        if (!has(route.query, name))
            throw Problem{400,
                          std::string(route.path) + " takes no parameter '" + name + "'" +
                              (*route.query != 0 ? "; it takes " + std::string(route.query) : "") + ".",
                          {{"name", name}}};
        if (value.find('\0') != value.npos)
            throw Problem{400, "The parameter " + name + " has a zero byte.", {{"name", name}}};
        if (has(kFlags, name) && value != "0" && value != "1")
            throw Problem{400, "The parameter " + name + " is 0 or 1, not '" + value + "'.", {{"name", name}}};
    }
}
}  // namespace kobd::web
