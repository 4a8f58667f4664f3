// kobctl nvram and kobctl config: the stores that the router's processes share. They are read and written without the
// daemon.
#include <unistd.h>

#include "client/arguments/words.h"
#include "client/commands/commands.h"
#include "client/requests/request.h"
#include "client/state/daemon_state.h"
#include "daemon/base/result.h"
#include "host/state/folder.h"
#include "host/state/stores.h"

namespace kobd::client
{
namespace
{
// The stores of another user's router are not this user's.
Failure CheckOwner(const std::string& what)
{
    return IsAnotherUsers() ? Failure{kNotRunning, what + ": " + WhyUnreachable()} : Failure();
}

Outcome Get(const std::string& store, const Words& keys)
{
    if (Failure failure = CheckOwner(store + " get")) return failure;
    UseStateToShow();
    std::vector<std::pair<std::string, std::string>> found;
    std::vector<std::string> missing;
    for (const std::string& key : keys)
    {
        std::string value;
        std::string why;
        const bool known = host::StoreRead(store.c_str(), key, &value, &why);
        if (!why.empty())
            return Failure{kSystemError,
                           store + " get: cannot read the database in " + host::StateFolderName() + ": " + why};
        if (known)
            found.emplace_back(key, value);
        else
            missing.push_back(store + " has no " + key);
    }
    Outcome outcome = ValuesOutcome(found, keys.size() == 1);
    for (const std::string& key : keys)
        if (!outcome.data.contains(key)) outcome.data[key] = nullptr;
    outcome.notes = missing;
    return outcome;
}

// All words are looked at before the first value is set: a mistake changes nothing.
Outcome Set(const std::string& store, const Words& words)
{
    Assignments pairs;
    if (Failure failure = ReadAssignments(store + " set takes KEY=VALUE", words, &pairs)) return failure;
    if (Failure failure = CheckOwner(store + " set")) return failure;
    UseStateToShow();
    for (const auto& [key, value] : pairs)
        if (const std::string why = host::StoreSet(store.c_str(), key, value, getpid()); !why.empty())
            return Failure{kSystemError, store + " set " + key + ": not set: " + why};
    Outcome outcome({{"set", Json::object()}}, "");
    for (const auto& [key, value] : pairs) outcome.data["set"][key] = value;
    return outcome;
}
}  // namespace

Outcome NvramGet(const Options&, const Words& keys) { return Get("nvram", keys); }
Outcome NvramSet(const Options&, const Words& words) { return Set("nvram", words); }
Outcome ConfigGet(const Options&, const Words& keys) { return Get("config", keys); }
Outcome ConfigSet(const Options&, const Words& words) { return Set("config", words); }
}  // namespace kobd::client
