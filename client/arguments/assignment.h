// NAME=VALUE words of set and check.
#pragma once

#include <string>
#include <vector>

#include "client/commands/commands.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct Assignment
{
    std::string name;
    std::string value;
};

// Reads the words of `command`. False after an error line when one is not NAME=VALUE.
bool ReadAssignments(const Options& options, const char* command, const Words& words, std::vector<Assignment>* pairs);

// The pairs as the items of a set request.
Items SetItems(const std::vector<Assignment>& pairs);
}  // namespace kobd::client
