// What the router's rpcd passes to a method: one JSON object. Its members are checked before the method runs.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "client/arguments/words.h"
#include "client/output/outcome.h"

namespace kobd::client
{
enum class ArgumentKind
{
    kText,
    kTexts,
    kNumber,  // an integer from 0 to 2147483647
    kFlag,
    kValues,  // an object of texts, integers and flags by name
};

struct Argument
{
    const char* name;
    ArgumentKind kind;
    bool needed = false;
};

// A value of the kind, from which rpcd makes the signature that `ubus -v list` shows.
Json Example(ArgumentKind kind);

// Reads the object from its text. Fails at what is no object, at an argument that is unknown, missing or of another
// kind, and at a text with a zero byte. An empty text is an object without members. rpcd's own member is dropped.
Failure ReadArguments(const std::string& text, std::span<const Argument> takes, Json* arguments);

// The members of checked arguments; empty, nothing or false where they are missing.
std::string TextOf(const Json& arguments, const char* name);
std::optional<int32_t> NumberOf(const Json& arguments, const char* name);
bool FlagOf(const Json& arguments, const char* name);
Words TextsOf(const Json& arguments, const char* name);
Assignments ValuesOf(const Json& arguments);  // of the member "values", as texts: true is "1"
}  // namespace kobd::client
