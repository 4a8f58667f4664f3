// The exported functions as case files call them: with texts, and with pointers that are missing.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kobd::test
{
using Words = std::vector<std::string>;
using Arguments = std::vector<std::optional<std::string>>;  // nothing: a null pointer; left out: the empty text

struct Outcome
{
    std::string result;  // in decimal; empty without one
    Words written;       // to the arguments that can be written to: a text, a row, offsets, captures
};

struct ExportedFunction
{
    std::function<Outcome(const Arguments&)> call;
    int (*check)(const char*) = nullptr;  // the function itself when it is a check of one text
};

// By name. Those that end the process or take any number of arguments are left out.
const std::map<std::string_view, ExportedFunction>& ExportedFunctions();
}  // namespace kobd::test
