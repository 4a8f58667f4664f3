// kobctl nvram and kobctl config: the stores that the router's processes share. Their files are read and written
// without the daemon.
#include <unistd.h>

#include <cerrno>

#include "client/arguments/words.h"
#include "client/commands/commands.h"
#include "daemon/base/result.h"
#include "host/state/state_store.h"
#include "platform/config.h"
#include "platform/nvram.h"

namespace kobd::client
{
namespace
{
struct Store
{
    std::string name;
    int (*get)(const char* key, char* value, size_t size);
    int (*set)(const char* key, const char* value);
};

const Store kNvram = {"nvram", nv_get, nvram_set};
const Store kConfig = {"config", kob_get_config, kob_set_config};

Outcome Get(const Store& store, const Words& keys)
{
    constexpr size_t kValueBuffer = 8192;  // more than either store keeps
    const std::string path = host::StateFolderName() + "/" + store.name;
    if (access(path.c_str(), R_OK) != 0 && errno != ENOENT)  // the library would show the factory's values
        return SystemFailure(store.name + " get: cannot read " + path);
    std::vector<std::pair<std::string, std::string>> found;
    std::vector<std::string> missing;
    for (const std::string& key : keys)
    {
        char value[kValueBuffer];
        if (store.get(key.c_str(), value, sizeof value) == 0)
            found.emplace_back(key, value);
        else
            missing.push_back(store.name + " has no " + key);
    }
    Outcome outcome = ValuesOutcome(found, keys.size() == 1);
    outcome.notes = missing;
    return outcome;
}

// All words are looked at before the first value is set: a mistake changes nothing.
Outcome Set(const Store& store, const Words& words)
{
    Assignments pairs;
    if (Failure failure = ReadAssignments(store.name + " set takes KEY=VALUE", words, &pairs)) return failure;
    for (const auto& [key, value] : pairs)
        if (store.set(key.c_str(), value.c_str()) != 0)
            return Failure{kSystemError, store.name + " set " + key +
                                             ": not set; a key is printable characters without blanks, a value at "
                                             "most 2047 characters, and the state folder must be writable"};
    return {};
}
}  // namespace

Outcome NvramGet(const Options&, const Words& keys) { return Get(kNvram, keys); }
Outcome NvramSet(const Options&, const Words& words) { return Set(kNvram, words); }
Outcome ConfigGet(const Options&, const Words& keys) { return Get(kConfig, keys); }
Outcome ConfigSet(const Options&, const Words& words) { return Set(kConfig, words); }
}  // namespace kobd::client
