// What the client knows of objects and tables: names, types, limits, operations and checks. They are the rows of
// kObjectRows and kTableRows, from which the daemon's records are made too.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/dictionary/names.h"
#include "dictionary/catalogue/view.h"
#include "dictionary/value_rule.h"

namespace kobd::client
{
using ObjectEntry = kobd::ObjectRow;
using TableEntry = kobd::TableRow;  // the catalogue's row about a table, not one of the table's rows

// The one of this name that requests reach; nullptr when there is none.
const ObjectEntry* FindObject(std::string_view name);
const TableEntry* FindTable(std::string_view name);
const ColumnDef* FindColumn(const TableEntry& table, std::string_view name);

// The names of all objects and tables.
Words KnownNames();

// "there is no KIND NAME", with the name that was probably meant: a table's for the kind "table", else also an
// object's. Of a table's name in the place of an object's it says that it is one, and the other way round.
std::string NoSuchName(const std::string& kind, const std::string& name);

// The names of the objects that can be read, in their order.
Words ReadableObjects();

// Whether the daemon runs commands for up to 60 seconds to read or change the table.
bool IsCellularTable(std::string_view table);

const char* AccessText(Access access);

// The names of the `Operation` bits, in their order.
Words OperationNames(unsigned operations);

// What the check accepts, in words with `before` in front of them; the empty text for a name that is no check of the
// catalogue.
std::string RuleOf(std::string_view check, const char* before = "");

// What the object takes, in words: "an integer from 1 to 65535", or what its check accepts.
std::string Accepts(const ObjectEntry& object);

// What the dictionary says against a value.
struct Fault
{
    int code = 0;             // that the daemon answers; 0: nothing is wrong
    std::string reason = {};  // "it is out of range"
    std::string right = {};   // what would be right: "an integer from 1 to 65535"; empty where nothing would

    explicit operator bool() const { return code != 0; }

    // "NAME=VALUE: it takes RIGHT", or the reason where nothing would be right; the empty text when nothing is wrong.
    std::string Text(const std::string& name, const std::string& value) const;
};

// The fault of the value for the object. Where there is none, the object's own check may still refuse it.
Fault JudgeObject(const std::string& name, const std::string& value);

// The same in one text: empty when the dictionary finds nothing wrong.
std::string WhatIsWrong(const std::string& name, const std::string& value);

// What is wrong with a value, in words that follow its name.
const char* FaultText(ValueFault fault);

// "T has no del operation, it has get, set".
std::string NoOperation(const TableEntry& table, Operation operation);

// "T has no row 7, it has 1, 2, 3".
std::string NoRow(const std::string& table, int32_t index, const std::vector<int32_t>& present);
}  // namespace kobd::client
