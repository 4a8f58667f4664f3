// kobctl confirm: keeps what set --confirm changed. With --resume, at the start of the service: goes on waiting, or
// restores the old values as soon as the daemon answers.
#include <algorithm>
#include <cerrno>

#include "client/commands/commands.h"
#include "client/requests/request.h"
#include "client/state/daemon_state.h"
#include "client/state/pending_set.h"
#include "client/state/waiting_process.h"
#include "daemon/base/result.h"
#include "host/state/database.h"
#include "host/state/folder.h"

namespace kobd::client
{
Outcome CommandConfirm(const Options& options, const Words&)
{
    constexpr int kReadMs = 1000;  // for values that only word the answer
    const bool daemons = UseDaemonsState();
    if (!daemons && IsAnotherUsers()) return Failure{kNotRunning, "confirm: " + WhyUnreachable()};
    const std::string nothing =
        "there is nothing to confirm" + (daemons ? "" : " in " + host::StateFolderName() + ", and no kobd answers");
    if (const host::State state; !options.resume && !state->Open(false) && state->Error() == ENOENT)
        return Failure{kInvalidArgument, nothing};  // before a folder is made
    PendingSet pending;
    if (const Failure& error = pending.Error()) return Failure{error.code, "confirm: " + error.what};
    const bool waits = options.resume && pending.IsPending();
    if (options.resume && (!waits || StartWaiting())) return {{{"waiting", waits}}, ""};
    if (options.resume) return SystemFailure("confirm --resume");
    if (!pending.IsPending() && pending.Refused().empty())
        return Failure{kInvalidArgument, pending.Ended().empty() ? nothing : "too late to confirm: " + pending.Ended()};
    if (!pending.IsPending())
    {
        Outcome outcome({{"forgotten", pending.RefusedNames()}}, "forgotten: " + pending.Refused() + "\n");
        if (const Failure failure = pending.Withdraw()) return Failure{failure.code, "confirm: " + failure.what};
        return outcome;
    }
    if (pending.IsOverdue())
    {
        const Failure failure = pending.TakeBack(options);
        return Failure{kInvalidArgument, "too late to confirm: " + (failure ? failure.what : pending.Restored())};
    }
    const auto old_values = pending.OldValues();
    Words unchanged = pending.PendingNames();
    if (const Failure failure = pending.Withdraw()) return Failure{failure.code, "confirm: " + failure.what};
    // From here on all are kept, whether or not the daemon answers.
    Options quick = options;
    quick.timeout_ms = std::min(kReadMs, options.timeout_ms.value_or(kReadMs));
    const Words kept = ChangedNames(quick, old_values);
    std::erase_if(unchanged, [&](const std::string& name) { return std::ranges::find(kept, name) != kept.end(); });
    Outcome outcome({{"kept", kept}}, kept.empty() ? "" : "kept: " + Joined(kept) + "\n");
    if (unchanged.empty()) return outcome;
    outcome.data["unchanged"] = unchanged;
    outcome.text += "unchanged: " + Joined(unchanged) + "\n";
    return outcome;
}
}  // namespace kobd::client
