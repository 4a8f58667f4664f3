// Reading the arguments of a method.
#include "client/rpcd/arguments.h"

#include <algorithm>

#include "client/dictionary/names.h"
#include "client/library/json_members.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr char kSession[] = "ubus_rpc_session";  // rpcd adds it to what a session calls

bool IsText(const Json& value)
{
    return value.is_string() && value.get_ref<const std::string&>().find('\0') == std::string::npos;
}

bool IsNumber(const Json& value)
{
    return value.is_number_unsigned() && value.get<uint64_t>() <= static_cast<uint64_t>(INT32_MAX);
}

bool IsValue(const Json& value) { return IsText(value) || value.is_number_integer() || value.is_boolean(); }

bool AreValues(const Json& values)
{
    if (!values.is_object()) return false;
    for (const auto& [name, value] : values.items())
        // A word NAME=VALUE is taken apart at its first sign.
        if (!IsValue(value) || !IsText(name) || name.find('=') != std::string::npos) return false;
    return true;
}

bool IsOfKind(ArgumentKind kind, const Json& value)
{
    switch (kind)
    {
        case ArgumentKind::kText: return IsText(value);
        case ArgumentKind::kTexts: return value.is_array() && std::ranges::all_of(value, IsText);
        case ArgumentKind::kNumber: return IsNumber(value);
        case ArgumentKind::kFlag: return value.is_boolean();
        case ArgumentKind::kValues: return AreValues(value);
    }
    return false;
}

const char* KindText(ArgumentKind kind)
{
    switch (kind)
    {
        case ArgumentKind::kText: return "a text without a zero byte";
        case ArgumentKind::kTexts: return "a list of texts without zero bytes";
        case ArgumentKind::kNumber: return "an integer from 0 to 2147483647";
        case ArgumentKind::kFlag: return "true or false";
        case ArgumentKind::kValues:
            return "an object that has a text, an integer, true or false for each name; no name holds =, no text a "
                   "zero byte";
    }
    return "";
}

Failure CheckArgument(const Argument& argument, const Json& arguments)
{
    const auto found = arguments.find(argument.name);
    const bool missing = found == arguments.end();
    if (missing ? !argument.needed : IsOfKind(argument.kind, *found)) return {};
    return {kInvalidArgument, std::string(argument.name) + (missing ? " is missing, " : " is of another kind, ") +
                                  "it takes " + KindText(argument.kind)};
}
}  // namespace

Json Example(ArgumentKind kind)
{
    switch (kind)
    {
        case ArgumentKind::kText: return "text";
        case ArgumentKind::kTexts: return Json::array();
        case ArgumentKind::kNumber: return 32;  // rpcd: the number of bits
        case ArgumentKind::kFlag: return true;
        case ArgumentKind::kValues: return Json::object();
    }
    return {};
}

Failure ReadArguments(const std::string& text, std::span<const Argument> takes, Json* arguments)
{
    const bool blank = text.find_first_not_of(" \t\r\n") == std::string::npos;
    std::string twice;
    *arguments = blank ? Json::object() : ParseMembers<Json>(text, &twice);
    if (!arguments->is_object()) return {kInvalidArgument, "standard input is no JSON object"};
    if (!twice.empty()) return {kInvalidArgument, twice + " is given twice"};
    arguments->erase(kSession);
    for (const auto& [name, value] : arguments->items())
        if (FindNamed(takes, name) == nullptr)
            return {kInvalidArgument,
                    "there is no argument " + name +
                        (takes.empty() ? ", it takes none" : ", there are " + Joined(AllNames(takes)))};
    for (const Argument& argument : takes)
        if (Failure failure = CheckArgument(argument, *arguments)) return failure;
    return {};
}

std::string TextOf(const Json& arguments, const char* name) { return arguments.value(name, std::string()); }

std::optional<int32_t> NumberOf(const Json& arguments, const char* name)
{
    if (!arguments.contains(name)) return {};
    return arguments[name].get<int32_t>();
}

bool FlagOf(const Json& arguments, const char* name) { return arguments.value(name, false); }

Words TextsOf(const Json& arguments, const char* name) { return arguments.value(name, Words()); }

Assignments ValuesOf(const Json& arguments)
{
    Assignments values;
    const Json given = arguments.value("values", Json::object());
    for (const auto& [name, value] : given.items())
        values.push_back({name, value.is_string()    ? value.get<std::string>()
                                : value.is_boolean() ? std::string(value.get<bool>() ? "1" : "0")
                                                     : value.dump()});
    return values;
}
}  // namespace kobd::client
