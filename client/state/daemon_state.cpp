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

std::string NotSaved(int longest_ms)
{
    constexpr int kRouterMs = 1000;  // of a router's daemon, which never answers, the system shows no database
    const auto texts =
        AskHost(KOBD_HOST_STATE, {}, DatabaseOfDaemon().empty() ? std::min(longest_ms, kRouterMs) : longest_ms);
    if (!texts && (IsBusy() || !DatabaseOfDaemon().empty()))
        return "it is not known whether that is saved, because kobd is busy";
    return texts && texts->size() > 1 && !texts->at(1).empty() ? "not saved: " + texts->at(1) : "";
}

std::optional<Words> NotCommitted()
{
    const auto texts = AskHost(KOBD_HOST_STATE);
    if (!texts) return std::nullopt;
    return texts->size() > 2 ? Words(texts->begin() + 2, texts->end()) : Words();
}

void AddNotSaved(const Options& options, const std::string& what, Outcome* outcome)
{
    constexpr int kLongestMs = 10000;  // another request may be in hand
    const std::string why = outcome->failure ? "" : NotSaved(options.timeout_ms.value_or(kLongestMs));
    if (why.empty()) return;
    outcome->notes.push_back(what + ", but " + why);
    outcome->status = kNotSaved;
    if (outcome->data.is_object()) outcome->data["saved"] = false;
}
}  // namespace kobd::client
