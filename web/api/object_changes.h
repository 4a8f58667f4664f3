// Values that are set together, or taken back when the router fails half way.
#pragma once

#include "web/api/bus.h"

namespace kobd::web
{
// Sets them, and returns each with its old value. Throws a Problem when they are refused or fail; it says which values
// were set back, and which could not be.
Json SetObjects(const Assignments& pairs);
}  // namespace kobd::web
