// The methods that kobctl offers to the router's rpcd.
#pragma once

#include <span>

#include "client/rpcd/arguments.h"

namespace kobd::client
{
struct Method
{
    const char* name;
    std::span<const Argument> takes;
    Json (*run)(const Options&, const Json& arguments);  // of checked arguments; the reply, always an object
};

std::span<const Method> Methods();
}  // namespace kobd::client
