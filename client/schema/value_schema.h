// The JSON Schema of one value, for the schema of an export and for OpenAPI.
#pragma once

#include "client/library/kobd_client.h"
#include "client/output/outcome.h"

namespace kobd::client
{
// What it means, its unit and what it takes, in whole sentences.
std::string SentencesOf(const kobd_description& description);

// The schema: a number is an integer, all else a string.
Json SchemaOf(const kobd_description& description);

// "#/PLACE/NAME", where a name may have any characters.
Json Reference(const std::string& place, const std::string& name);

// All objects that requests reach, with their schemas by name.
Json ObjectSchemas();

// The columns of a row with their schemas by name.
Json ColumnSchemas(const kobd_table_description& table);
}  // namespace kobd::client
