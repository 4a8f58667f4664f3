// The stores nvram and config.
#include "host/state/stores.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <span>

#include "host/state/folder.h"
#include "host/state/report.h"
#include "platform/config.h"
#include "platform/nvram.h"

namespace kobd::host
{
namespace
{
struct FactoryValue
{
    std::string_view key;
    std::string_view value;
};

constexpr FactoryValue kNvram[] = {
    // What the radio module supports: band numbers of 3GPP TS 36.101 (LTE) and TS 38.101 (NR).
    {"suppband", "1 3 7 8 20 28 38 40 41"},
    {"suppband5g", "1 3 28 78"},
    // Which APN profiles are in use, and the number of the one that carries the default route.
    {"apn1_enable", "1"},
    {"apn2_enable", "1"},
    {"apn3_enable", "0"},
    {"apn4_enable", "0"},
    {"default_gateway", "1"},
    // The connection state. "connected_time": seconds of uptime when Ethernet WAN got its address.
    {"main_status", "connected"},
    {"eth_status", "0"},
    {"lte_status", "1"},
    {"connected_time", "0"},
    {"dualwan_net_select_mode", "auto_select"},
    // The WAN interface in use by the management agent, by voice and by SNMP.
    {"wan_interface_tr069", "rmnet_data0"},
    {"wan_interface_voip", "rmnet_data1"},
    {"wan_interface_snmp", "rmnet_data0"},
};

constexpr FactoryValue kConfig[] = {
    {"cellular.roaming.enable", "0"},
    {"cellular.roaming.status", "Home"},
    {"cellular.interfacenumber", "1"},
    {"cellular.accesspointnumber", "2"},
};

struct Store
{
    const char* name;
    std::span<const FactoryValue> factory;
};
constexpr Store kStores[] = {{"nvram", kNvram}, {"config", kConfig}};

using Waiting = std::map<std::pair<const Store*, std::string>, std::string, std::less<>>;
Waiting waiting;         // set, and not yet committed
bool committed = false;  // the request in hand is going to be
int asker = 0;           // the process whose request is in hand

const Store& StoreOf(std::string_view name) { return kStores[name == kStores[0].name ? 0 : 1]; }

std::optional<std::string_view> Factory(const Store& store, std::string_view key)
{
    const auto found = std::ranges::find(store.factory, key, &FactoryValue::key);
    return found == store.factory.end() ? std::nullopt : std::optional(found->value);
}

// The value in the database, else the factory's. False for a key that neither has.
bool Read(Database* database, const Store& store, std::string_view key, std::string* value)
{
    Query query = database->Ask("SELECT value FROM stores WHERE store = ? AND key = ?", store.name, key);
    if (query.Next())
    {
        *value = query.Text(0);
        return true;
    }
    const auto factory = Factory(store, key);
    *value = factory.value_or("");
    return factory.has_value();
}

// Writes the value; without one the factory's is there again, or none.
void Write(Database* database, const Store& store, std::string_view key, std::optional<std::string_view> value,
           History* history)
{
    Change change = {.kind = store.name, .name = key, .now = value ? value : Factory(store, key)};
    std::string old;
    if (Read(database, store, key, &old)) change.old = old;
    if (change.old == change.now) return;
    if (value)
        database->Run("INSERT OR REPLACE INTO stores VALUES(?, ?, ?)", store.name, key, *value);
    else
        database->Run("DELETE FROM stores WHERE store = ? AND key = ?", store.name, key);
    history->Add(change);
}

bool TryWriteAlone(Database* database, const Store& store, std::string_view key, std::optional<std::string_view> value,
                   int asked)
{
    History history(database, asked);
    return database->Write(
        [&]
        {
            Write(database, store, key, value, &history);
            history.Finish();
        });
}

// The empty text, or why it was not written. A damaged database is kept aside.
std::string WriteAlone(const Store& store, std::string_view key, std::optional<std::string_view> value, int asked)
{
    const State state;
    const bool written = TryWriteAlone(&*state, store, key, value, asked) ||
                         (state->KeepDamagedAside() && TryWriteAlone(&*state, store, key, value, asked));
    return written ? "" : state->Why();
}

// A key is printed in messages and typed at terminals.
bool IsKey(std::string_view key)
{
    return !key.empty() && key.size() <= kStoreKeyMax &&
           std::ranges::all_of(key, [](char c) { return c > ' ' && c <= '~' && c != '='; });
}

// What waits counts before what the database has.
bool ReadOrReport(const Store& store, const char* key, std::string* value)
{
    const State state;
    if (const auto found = waiting.find({&store, key}); found != waiting.end())
    {
        *value = found->second;
        return true;
    }
    std::string why;
    const bool known = StoreRead(store.name, key, value, &why);
    if (!why.empty())
        REPORT("Stores", "cannot read %s in %s (%s), factory values serve", store.name, StateFolder().c_str(),
               why.c_str());
    return known;
}

int Get(const Store& store, const char* key, char* value, size_t size)
try
{
    *value = 0;
    std::string text;
    if (!ReadOrReport(store, key, &text))
    {
        errno = ENOENT;
        return -1;
    }
    const size_t length = std::min(text.size(), size - 1);
    memcpy(value, text.data(), length);
    value[length] = 0;
    return 0;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("Stores", -1);
}

int Set(const Store& store, const char* key, const char* value)
try
{
    const State state;
    if (committed && IsKey(key) && strlen(value) <= kStoreValueMax)
    {
        waiting[{&store, key}] = value;
        return 0;
    }
    const std::string why = StoreSet(store.name, key, value, asker);
    if (why.empty()) waiting.erase({&store, key});
    if (!why.empty()) REPORT("Stores", "cannot set %s %s: %s", store.name, key, why.c_str());
    return why.empty() ? 0 : -1;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("Stores", -1);
}
}  // namespace

void StoresBeginRequest(int asked, bool is_committed)
{
    const State state;
    asker = asked;
    committed = is_committed;
}

void StoresEndRequest() { StoresBeginRequest(0, false); }

bool StoresChanged() { return !waiting.empty(); }

void StoresWrite(Database* database, History* history)
{
    for (const auto& [key, value] : waiting) Write(database, *key.first, key.second, value, history);
}

void StoresWritten() { waiting.clear(); }

std::string_view NvramFactory(std::string_view key) { return Factory(kStores[0], key).value_or(std::string_view()); }

bool StoreRead(const char* name, std::string_view key, std::string* value, std::string* why)
{
    const Store& store = StoreOf(name);
    const State state;
    const bool known = state->Open(false) && Read(&*state, store, key, value);
    if (state->Failed() && state->Error() != ENOENT) *why = state->Why();
    const auto factory = Factory(store, key);
    if (!known) *value = factory.value_or("");
    return known || factory.has_value();
}

std::vector<std::string> StoreKeys(const char* store)
{
    const Store& of = StoreOf(store);
    std::set<std::string> keys;
    for (const FactoryValue& one : of.factory) keys.emplace(one.key);
    const State state;
    if (state->Open(false))
        for (Query query = state->Ask("SELECT key FROM stores WHERE store = ?", of.name); query.Next();)
            keys.emplace(query.Text(0));
    return {keys.begin(), keys.end()};
}

std::string StoreSet(const char* name, std::string_view key, std::string_view value, int asked)
{
    if (!IsKey(key)) return "a key is printable characters without blanks and '='";
    if (value.size() > kStoreValueMax) return "a value has at most 2047 characters";
    return WriteAlone(StoreOf(name), key, value, asked);
}

std::string StoreUnset(const char* name, std::string_view key, int asked)
{
    return WriteAlone(StoreOf(name), key, std::nullopt, asked);
}
}  // namespace kobd::host

using namespace kobd::host;
int nv_get(const char* key, char* value, size_t size) { return Get(kStores[0], key, value, size); }
int nvram_cpy(const char* key, char* value, size_t size) { return Get(kStores[0], key, value, size); }
int nvram_set(const char* key, const char* value) { return Set(kStores[0], key, value); }
int kob_get_config(const char* key, char* value, size_t size) { return Get(kStores[1], key, value, size); }
int kob_set_config(const char* key, const char* value) { return Set(kStores[1], key, value); }
