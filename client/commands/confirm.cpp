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
int Resume(const Options& options, bool pending)
{
    if (!pending || StartWaiting()) return 0;
    return Fail(options, kSystemError, std::string("confirm --resume: ") + strerror(errno));
}
}  // namespace

int CommandConfirm(const Options& options, const Words&)
{
    if (!MayBePending() && options.resume) return 0;
    PendingSet pending;
    if (!pending.Error().empty()) return Fail(options, kSystemError, "confirm: " + pending.Error());
    if (options.resume) return Resume(options, pending.IsPending());
    if (!pending.IsPending()) return Fail(options, kInvalidArgument, "there is nothing to confirm");
    const std::string names = pending.Names();
    if (pending.IsOverdue())
    {
        const std::string error = pending.TakeBack(options);
        return Fail(options, kInvalidArgument,
                    "too late to confirm " + names + ": " + (error.empty() ? "the old values are back" : error));
    }
    if (!pending.Withdraw()) return Fail(options, kSystemError, std::string("confirm: ") + strerror(errno));
    if (options.json) return 0;
    printf("kept: %s\n", names.c_str());
    return 0;
}
}  // namespace kobd::client
