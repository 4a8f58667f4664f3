// Asking the imitated router about its state.
#include "client/state/daemon_state.h"

#include <unistd.h>

#include <algorithm>

#include "client/requests/request.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr int kNotSaved = 3;  // exit status
}

bool UseDaemonsState()
{
    static const bool found = []
    {
        constexpr int kIdleMs = 300;  // a daemon that is busy answers later; the system shows what it has open
        const auto texts = AskHost(KOBD_HOST_STATE, {}, kIdleMs);
        std::string folder = texts && !texts->empty() ? texts->front() : DatabaseOfDaemon();
        if (!texts) folder.resize(folder.empty() ? 0 : folder.rfind('/'));
        if (!folder.empty()) host::UseStateFolder(folder);
        return !folder.empty();
    }();
    return found;
}

void UseStateToShow()
{
    if (UseDaemonsState()) return;
    const std::string folder = host::StateFolderName();
    const bool there = access(folder.c_str(), F_OK) == 0;
    kobd_module daemon{};
    const bool seen = kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == 0 && daemon.claimed != 0;
    const std::string why = seen ? "kobd does not tell where its state is" : WhyUnreachable();
    SayError(why + "; this is the state in " + folder + (there ? "" : ", a folder that does not exist"));
}

Saving LastSaving(int longest_ms)
{
    constexpr int kRouterMs = 1000;  // a router's daemon never answers, and is not asked again after that
    const int first_ms = std::min(longest_ms, kRouterMs);
    auto texts = AskHost(KOBD_HOST_STATE, {}, first_ms);
    if (!texts && longest_ms > first_ms) texts = AskHost(KOBD_HOST_STATE, {}, longest_ms - first_ms);
    if (texts) return {.why_not = texts->size() > 1 ? texts->at(1) : ""};
    return {.known = !IsBusy() && DatabaseOfDaemon().empty()};
}

std::string SavingText(const Saving& saving)
{
    if (!saving.known) return "it is not known whether that is saved, because kobd is busy";
    return saving.why_not.empty() ? "" : "not saved: " + saving.why_not;
}

std::optional<Words> NotCommitted()
{
    const auto texts = AskHost(KOBD_HOST_STATE);
    if (!texts) return std::nullopt;
    return texts->size() > 2 ? Words(texts->begin() + 2, texts->end()) : Words();
}

void AddNotCommitted(Outcome* outcome)
{
    const Words names = NotCommitted().value_or(Words());
    if (names.empty()) return;
    outcome->failure.what += "; set, but not saved: " + Joined(names) + "; kobctl commit saves that";
    outcome->particulars["saved"] = false;
}

void AddNotSaved(const Options& options, const std::string& what, Outcome* outcome)
{
    constexpr int kLongestMs = 10000;  // another request may be in hand
    if (outcome->failure) return;
    const std::string why = SavingText(LastSaving(options.timeout_ms.value_or(kLongestMs)));
    if (why.empty()) return;
    outcome->notes.push_back(what + ", but " + why);
    outcome->status = kNotSaved;
    if (outcome->data.is_object()) outcome->data["saved"] = false;
}
}  // namespace kobd::client
