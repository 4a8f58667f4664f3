// What the client knows of the objects: names, types, access, limits and checks, made from the same
// rows as the daemon's records. tables.h has the tables.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "dictionary/catalogue/view.h"

namespace kobd::client
{
using kobd::Access;
using ObjectEntry = ObjectRow;

std::span<const ObjectEntry> Objects();

// The entry that requests by this name reach; nullptr when there is none.
const ObjectEntry* FindObject(std::string_view name);

const char* TypeName(ValueType type);
const char* AccessText(Access access);

// What the object takes, in words: "an integer from 1 to 65535", or what its check accepts.
std::string Accepts(const ObjectEntry& object);

// What a check accepts, in words; nullptr for a name that is no check of the catalogue.
const char* RuleOf(std::string_view check);

// The name of an object or table most like `name`, or the empty text when none is near.
std::string Nearest(std::string_view name);
}  // namespace kobd::client
