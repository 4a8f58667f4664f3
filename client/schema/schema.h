// The whole dictionary for machines. Each is one text, made from the library's descriptions.
#pragma once

#include <string>

namespace kobd::client
{
// A JSON Schema (2020-12) of what `kobctl export --json` prints.
std::string JsonSchema();

// An OpenAPI (3.1) description of the dictionary over HTTP.
std::string OpenApi();

// A YANG (1.1) module named kobd.
std::string YangModule();
}  // namespace kobd::client
