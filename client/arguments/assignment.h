// Words of the form NAME=VALUE.
#pragma once

#include <string>
#include <vector>

#include "client/arguments/words.h"
#include "client/output/failure.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct Assignment
{
    std::string name;
    std::string value;

    std::string Text() const { return name + "=" + value; }
};

using Assignments = std::vector<Assignment>;

// Reads the words. `takes` begins the failure for a word of another form: "set takes NAME=VALUE".
Failure ReadAssignments(const std::string& takes, const Words& words, Assignments* pairs);

// "NAME, NAME".
std::string NamesOf(const Assignments& pairs);

// The pairs as the items of a set request.
Items SetItems(const Assignments& pairs);
}  // namespace kobd::client
