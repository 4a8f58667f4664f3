#include "web/server/body.h"

#include <string>

#include "client/library/json_members.h"

namespace kobd::web
{
Json BodyOf(std::string_view text)
{
    std::string twice;
    Json body = client::ParseMembers<Json>(text, &twice);
    if (!body.is_object()) throw Problem{400, "The body is no JSON object."};
    if (!twice.empty()) throw Problem{422, "The body has '" + twice + "' twice.", {{"name", twice}}};
    return body;
}
}  // namespace kobd::web
