// What the dictionary says, as JSON.
#pragma once

#include "client/library/kobd_client.h"
#include "web/server/problem.h"

namespace kobd::web
{
Json DescriptionOf(const kobd_description& description);
Json DescriptionOf(const kobd_table_description& table);

// The description that requests mean by the name at this position, or nullptr when another one before has the name.
// False behind the last one.
bool ObjectAt(size_t position, const kobd_description** object);

// What is shown in place of a secret.
inline constexpr const char* kMasked = "(secret)";
}  // namespace kobd::web
