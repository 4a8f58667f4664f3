// kobctl nvram and kobctl config: the stores that the router's processes share. They are read and
// written in their files, no daemon is needed.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "client/commands/commands.h"
#include "daemon/base/result.h"
#include "host/state/state_store.h"
#include "platform/config.h"
#include "platform/nvram.h"

namespace kobd::client
{
namespace
{
constexpr size_t kValueBuffer = 8192;  // more than either store keeps

struct Store
{
    const char* name;
    int (*get)(const char* key, char* value, size_t size);
    int (*set)(const char* key, const char* value);
};

int Get(const Options& options, const Store& store, const Words& words)
{
    const std::string path = host::StateFolderName() + "/" + store.name;
    if (access(path.c_str(), R_OK) != 0 && errno != ENOENT)  // the library would show what the factory set
        return Fail(options, kSystemError,
                    std::string(store.name) + " get: cannot read " + path + ": " + strerror(errno));
    int status = 0;
    const char* separator = "";
    if (options.json) printf("{");
    for (size_t i = 1; i < words.size(); ++i)
    {
        const std::string& key = words[i];
        char value[kValueBuffer];
        if (store.get(key.c_str(), value, sizeof value) != 0)
        {
            SayError(std::string(store.name) + " has no " + key);
            status = 1;
            continue;
        }
        if (options.json)
            printf("%s%s:%s", separator, JsonString(key).c_str(), JsonString(value).c_str());
        else if (words.size() == 2)
            printf("%s\n", Shown(value).c_str());
        else
            printf("%s=%s\n", key.c_str(), Shown(value).c_str());
        separator = ",";
    }
    if (options.json) printf("}\n");
    return status;
}

// All words are looked at before the first is set: a slip changes nothing.
int Set(const Options& options, const Store& store, const Words& words)
{
    for (size_t i = 1; i < words.size(); ++i)
        if (const size_t equals = words[i].find('='); equals == std::string::npos || equals == 0)
            return WrongUse(options, std::string(store.name) + " set takes KEY=VALUE, not '" + words[i] + "'",
                            store.name);
    for (size_t i = 1; i < words.size(); ++i)
    {
        const size_t equals = words[i].find('=');
        const std::string key = words[i].substr(0, equals);
        if (store.set(key.c_str(), words[i].c_str() + equals + 1) != 0)
            return Fail(options, kSystemError,
                        std::string(store.name) + " set " + key +
                            ": not set; a key is printable characters without blanks, a value at most 2047 "
                            "characters, and the state folder must be writable");
    }
    return 0;
}

int Run(const Options& options, const Store& store, const Words& words)
{
    if (words.size() > 1 && words[0] == "get") return Get(options, store, words);
    if (words.size() > 1 && words[0] == "set") return Set(options, store, words);
    return WrongUse(options, std::string(store.name) + " takes get KEY... or set KEY=VALUE...", store.name);
}
}  // namespace

int CommandNvram(const Options& options, const Words& words)
{
    return Run(options, {"nvram", nv_get, nvram_set}, words);
}

int CommandConfig(const Options& options, const Words& words)
{
    return Run(options, {"config", kob_get_config, kob_set_config}, words);
}
}  // namespace kobd::client
