// What the client knows of objects and tables: names, types, limits, operations and checks. They are the rows of
// kObjectRows and kTableRows, from which the daemon's records are made too.
#pragma once

#include <string>
#include <string_view>

#include "client/arguments/words.h"
#include "dictionary/catalogue/view.h"

namespace kobd::client
{
using ObjectEntry = kobd::ObjectRow;
using TableEntry = kobd::TableRow;  // the catalogue's row about a table, not one of the table's rows

// The one of this name that requests reach; nullptr when there is none.
const ObjectEntry* FindObject(std::string_view name);
const TableEntry* FindTable(std::string_view name);
const ColumnDef* FindColumn(const TableEntry& table, std::string_view name);

// "there is no KIND NAME", with the name that was probably meant: a table's for the kind "table", else also an
// object's.
std::string NoSuchName(const std::string& kind, const std::string& name);

// The names of the objects that can be read, in their order.
Words ReadableObjects();

const char* AccessText(Access access);

// The names of the `Operation` bits, in their order.
Words OperationNames(unsigned operations);

// What the check accepts, in words with `before` in front of them; the empty text for a name that is no check of the
// catalogue.
std::string RuleOf(std::string_view check, const char* before = "");

// What the object takes, in words: "an integer from 1 to 65535", or what its check accepts.
std::string Accepts(const ObjectEntry& object);

// Why the daemon would refuse the value and what would be right; the empty text when the dictionary finds nothing
// wrong. The object's own check may still refuse it.
std::string WhatIsWrong(const std::string& name, const std::string& value);
}  // namespace kobd::client
