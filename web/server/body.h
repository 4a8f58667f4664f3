// The body of a request: a JSON object.
#pragma once

#include <string_view>

#include "web/server/problem.h"

namespace kobd::web
{
// Throws a Problem: 400 when the text is no JSON object, 422 when an object in it names a member twice,
// or a name has a zero byte.
Json BodyOf(std::string_view text);
}  // namespace kobd::web
