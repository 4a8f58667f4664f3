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
}  // namespace kobd::web
