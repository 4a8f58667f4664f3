// Says why the daemon would refuse a value, from the dictionary alone.
#pragma once

#include <string>

namespace kobd::client
{
// What is wrong with `value` for `name` and what would be right; the empty text when the
// dictionary finds nothing wrong (then the object's own check decided).
std::string WhatIsWrong(const std::string& name, const std::string& value);
}  // namespace kobd::client
