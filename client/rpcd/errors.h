// What a method of rpcd answers when it refuses: {"error": {"code", "name", "value", "reason", "right"}}.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/output/outcome.h"

namespace kobd::client
{
// A value that may have been refused.
struct AskedValue
{
    std::string prefix;                     // what a failure about it begins with
    std::string name;                       // empty: it is one of several
    std::optional<std::string> value = {};  // nothing: only a name was asked for
    std::string right = {};                 // what would be right; empty where that is not known
};

// The error, with the name, the value and what would be right where the failure is about one of the asked values.
Json ErrorReply(const Failure& failure, const std::vector<AskedValue>& asked = {});

// The outcome of a command: its data under `name` and its notes, or the error.
Json ReplyOf(const Outcome& outcome, const char* name, const std::vector<AskedValue>& asked = {});
}  // namespace kobd::client
