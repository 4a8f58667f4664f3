// kobctl set NAME=VALUE... [--silent], and commit.
#include <cstdio>

#include "client/commands.h"
#include "client/diagnose.h"
#include "client/dictionary.h"
#include "client/log_window.h"
#include "client/request.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
struct Assignment
{
    std::string name;
    std::string value;
};

// The pair that was refused with the reasons of the log and of the dictionary, or all pairs with
// the checks they had to pass.
std::string Reason(const std::vector<Assignment>& pairs, const std::vector<LogLine>& log)
{
    std::string passed;
    for (const auto& [name, value] : pairs)
    {
        const std::string why = WhyRefused(log, name, value);
        const std::string wrong = WhatIsWrong(name, value);
        if (!why.empty()) return name + "=" + value + ": " + why + "; it takes " + Accepts(*FindObject(name));
        if (!wrong.empty()) return wrong;
        if (!passed.empty()) passed += ", ";
        passed += name + "=" + value;
        const ObjectEntry* object = FindObject(name);
        if (object != nullptr && object->validator != nullptr) passed += ": it takes " + Accepts(*object);
    }
    return passed;
}
}  // namespace

int CommandSet(const Options& options, const Words& assignments)
{
    std::vector<Assignment> pairs;
    Items items;
    for (const std::string& word : assignments)
    {
        const size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
        {
            Fail(options, kInvalidArgument, "set takes NAME=VALUE, not '" + word + "'");
            return 2;
        }
        pairs.push_back({word.substr(0, equals), word.substr(equals + 1)});
        items.emplace_back(kTagObjectName, pairs.back().name);
        items.emplace_back(kTagValue, pairs.back().value);
    }
    const LogWindow log;
    const Response response = Call(options.silent ? kRequestSetSilent : kRequestSet, items, options.timeout_ms);
    if (response.code == 0) return 0;
    if (response.too_large)
        return Fail(options, kBufferLimit, "these values do not fit one request of 8192 bytes; nothing was set");
    if (response.from_bus) return FailRequest(options, response.code, true, "set");
    return FailRequest(options, response.code, false, Reason(pairs, log.Lines()));
}

int CommandCommit(const Options& options, const Words&)
{
    const Response response = Call(kRequestUpdate, {}, options.timeout_ms);
    return response.code == 0 ? 0 : FailRequest(options, response.code, response.from_bus, "commit");
}
}  // namespace kobd::client
