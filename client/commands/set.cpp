// kobctl set NAME=VALUE... [--silent] [--confirm SECONDS], and commit.
#include <cstdio>

#include "client/arguments/assignment.h"
#include "client/commands/commands.h"
#include "client/dictionary/diagnose.h"
#include "client/dictionary/dictionary.h"
#include "client/requests/log_window.h"
#include "client/requests/request.h"
#include "client/state/pending_set.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
// The pair that was refused with the reasons of the log and of the dictionary, or all pairs with
// the checks they had to pass.
std::string Reason(const std::vector<Assignment>& pairs, const std::vector<LogLine>& log)
{
    std::string passed;
    for (const auto& [name, value] : pairs)
    {
        const std::string why = WhyRefused(log, name, value);
        if (!why.empty()) return name + "=" + value + ": " + why + "; it takes " + Accepts(*FindObject(name));
        const std::string wrong = WhatIsWrong(name, value);
        if (wrong.empty() && WasRefused(log, name, value))
            return name + "=" + value + ": it takes " + Accepts(*FindObject(name));
        if (!wrong.empty()) return wrong;
        if (!passed.empty()) passed += ", ";
        passed += name + "=" + value;
        const ObjectEntry* object = FindObject(name);
        if (object != nullptr && object->validator != nullptr) passed += ": it takes " + Accepts(*object);
    }
    return passed;
}

Response Send(const Options& options, const std::vector<Assignment>& pairs)
{
    return Call(options.silent ? kRequestSetSilent : kRequestSet, SetItems(pairs), options.timeout_ms);
}

// The exit status, after an error line where the set was not done.
int Report(const Options& options, const std::vector<Assignment>& pairs, const Response& response,
           const std::vector<LogLine>& log)
{
    if (response.code == 0) return 0;
    if (response.too_large)
        return Fail(options, kBufferLimit, "these values do not fit one request of 8192 bytes; nothing was set");
    if (response.from_bus) return FailChange(options, response.code, true, "set");
    return FailRequest(options, response.code, false, Reason(pairs, log));
}

struct Tried
{
    int begin_code = 0;
    std::string not_begun = {};
    Response response = {};
    std::vector<LogLine> log = {};
    std::string not_back = {};  // why the old values did not return
};

// Keeps the old values on the disk, then sends the new ones.
Tried TrySet(const Options& options, const std::vector<Assignment>& pairs)
{
    Tried tried;
    PendingSet pending;
    tried.not_begun = pending.Begin(options, pairs, &tried.begin_code);
    if (!tried.not_begun.empty()) return tried;
    const LogWindow log;
    tried.response = Send(options, pairs);
    tried.log = log.Lines();
    const bool unknown = tried.response.from_bus && tried.response.code == kReplyTimeout;
    if (tried.response.code == 0 || unknown) return tried;
    // Refused, perhaps after a part of it: the router itself may refuse what the checks let pass.
    if (!pending.IsUnchanged(options) || !pending.Withdraw()) tried.not_back = pending.TakeBack(options);
    return tried;
}

// A set whose values go back by themselves.
int SetUntilConfirmed(const Options& options, const std::vector<Assignment>& pairs)
{
    const Tried tried = TrySet(options, pairs);  // holds the lock of the pending set no longer
    if (!tried.not_begun.empty())
        return Fail(options, tried.begin_code, "set --confirm: " + tried.not_begun + "; nothing was set");
    const int status = Report(options, pairs, tried.response, tried.log);
    const bool unknown = tried.response.from_bus && tried.response.code == kReplyTimeout;
    if (status == 0 && options.json) return printf("{\"confirm_within\":%d}\n", options.confirm_s) < 0 ? 1 : 0;
    if (status == 0 || unknown)
        fprintf(status == 0 ? stdout : stderr, "%sthe old values return in %d seconds unless kobctl confirm follows\n",
                status == 0 ? "" : "kobctl: ", options.confirm_s);
    if (!tried.not_back.empty()) SayError(tried.not_back);
    return status;
}
}  // namespace

int CommandSet(const Options& options, const Words& words)
{
    std::vector<Assignment> pairs;
    if (!ReadAssignments(options, "set", words, &pairs)) return 2;
    if (options.confirm_s > 0 && options.silent)
        return WrongUse(options, "set takes --silent or --confirm, not both", "set");
    if (options.confirm_s > 0) return SetUntilConfirmed(options, pairs);
    const LogWindow log;
    const Response response = Send(options, pairs);
    return Report(options, pairs, response, log.Lines());
}

int CommandCommit(const Options& options, const Words&)
{
    const Response response = Call(kRequestUpdate, {}, options.timeout_ms);
    return response.code == 0 ? 0 : FailChange(options, response.code, response.from_bus, "commit");
}
}  // namespace kobd::client
