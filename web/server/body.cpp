#include "web/server/body.h"

#include <string>

#include "client/library/json_members.h"

namespace kobd::web
{
namespace
{
// The library takes names as texts that end with a zero byte.
void CheckNames(const Json& body)
{
    for (const auto& [name, value] : body.items())
    {
        if (name.find('\0') != name.npos) throw Problem{422, "A name in the body has a zero byte.", {{"name", name}}};
        if (value.is_object()) CheckNames(value);
    }
}
}  // namespace

Json BodyOf(std::string_view text)
{
    std::string twice;
    Json body = client::ParseMembers<Json>(text, &twice);
    if (!body.is_object()) throw Problem{400, "The body is no JSON object."};
    if (!twice.empty()) throw Problem{422, "The body has '" + twice + "' twice.", {{"name", twice}}};
    CheckNames(body);
    return body;
}
}  // namespace kobd::web
