// kobctl confirm: keeps what set --confirm changed. With --resume, at the start of the service: goes
// on waiting, or sets the old values as soon as the daemon answers.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/commands/commands.h"
#include "client/state/pending_set.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
struct Confirmed
{
    std::string names = {};  // of what is kept
    std::string error = {};
    int code = 0;
};

Confirmed Confirm(const Options& options)
{
    PendingSet pending;
    if (!pending.Error().empty()) return {"", "confirm: " + pending.Error(), kSystemError};
    if (options.resume && (!pending.IsPending() || StartWaiting())) return {};
    if (options.resume) return {"", std::string("confirm --resume: ") + strerror(errno), kSystemError};
    if (!pending.IsPending()) return {"", "there is nothing to confirm", kInvalidArgument};
    const std::string names = pending.Names();
    if (pending.IsOverdue())
    {
        const std::string error = pending.TakeBack(options);
        return {"", "too late to confirm " + names + ": " + (error.empty() ? "the old values are back" : error),
                kInvalidArgument};
    }
    if (!pending.Withdraw()) return {"", std::string("confirm: ") + strerror(errno), kSystemError};
    return {names};
}
}  // namespace

int CommandConfirm(const Options& options, const Words&)
{
    if (!MayBePending() && options.resume) return 0;
    const Confirmed confirmed = Confirm(options);  // holds the lock of the pending set no longer
    if (!confirmed.error.empty()) return Fail(options, confirmed.code, confirmed.error);
    if (!options.json && !confirmed.names.empty()) printf("kept: %s\n", confirmed.names.c_str());
    return 0;
}
}  // namespace kobd::client
