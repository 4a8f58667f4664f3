// Every platform function the daemon calls, recorded.
#include "tests/recording_platform.h"

#include <cstdlib>
#include <cstring>

#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/table_operations.h"
#include "dictionary/records.h"
#include "platform/config.h"
#include "platform/connection.h"
#include "platform/kob_platform.h"
#include "platform/message.h"
#include "platform/nvram.h"
#include "platform/text.h"

namespace kobd::test
{
RecordingPlatform platform;

void ResetPlatform()
{
    platform = {};
    g_stConfigWANIF = {{"wan1", "wan2", "wan3", "wan4"}, 4};
}

std::vector<std::string> RecordingPlatform::Calls(const std::string& prefix) const
{
    std::vector<std::string> found;
    for (const std::string& call : calls)
        if (call.starts_with(prefix)) found.push_back(call);
    return found;
}

namespace
{
int Failure(const std::string& name)
{
    const auto found = platform.failures.find(name);
    return found == platform.failures.end() ? 0 : found->second;
}

int Record(const std::string& call)
{
    platform.calls.push_back(call);
    return Failure(call);
}

int RecordGet(const char* getter, char* value)
{
    platform.calls.push_back(std::string("get ") + getter);
    if (const auto found = platform.values.find(getter); found != platform.values.end())
        memcpy(value, found->second.c_str(), found->second.size() + 1);
    return Failure(getter);
}

int RecordSet(const char* setter, const char* value)
{
    platform.calls.push_back(std::string("set ") + setter + " " + value);
    if (platform.during_set) platform.during_set();
    return Failure(setter);
}

// Writes the call down; the failure that the test chose for the function, or for its call with
// this index.
int RecordList(const char* operation, const std::string& function, int32_t index, const std::string& path = "")
{
    platform.calls.push_back(operation + (" " + function) + " " + std::to_string(index) + path);
    const int code = Failure(function);
    return code != 0 ? code : Failure(function + " " + std::to_string(index));
}

// The first table of the catalogue whose operations, one of them, are `function`.
template <typename Function>
const TableDef& TableOf(Function TableOps::*operation, Function function)
{
    for (const TableDef& table : kTables)
        if (table.ops->*operation == function) return table;
    abort();  // every operation is made from a row of the catalogue
}

int CopyRow(const std::map<int32_t, std::string>& rows, std::map<int32_t, std::string>::const_iterator found, void* row)
{
    if (found == rows.end()) return kIndexNotFound;
    memcpy(row, found->second.data(), found->second.size());
    return 0;
}

int RowAdd(const char* function, const TableDef& table, int32_t* index)
{
    if (const int code = RecordList("add", function, -1)) return code;
    auto& rows = platform.rows[table.name];
    *index = rows.empty() ? 1 : rows.rbegin()->first + 1;
    std::string& row = rows[*index] = std::string(table.row_size, '\0');
    memcpy(row.data(), index, sizeof *index);
    return 0;
}

int RowDel(const char* function, const TableDef& table, int32_t index)
{
    if (const int code = RecordList("del", function, index)) return code;
    return platform.rows[table.name].erase(index) != 0 ? 0 : kIndexNotFound;
}

int RowGet(const char* function, const TableDef& table, int32_t index, void* row)
{
    if (const int code = RecordList("get", function, index)) return code;
    const auto& rows = platform.rows[table.name];
    return CopyRow(rows, rows.find(index), row);
}

int RowSet(const char* function, const TableDef& table, int32_t index, const void* row)
{
    if (const int code = RecordList("set", function, index)) return code;
    auto& rows = platform.rows[table.name];
    if (!rows.contains(index)) return kIndexNotFound;
    rows[index].assign(static_cast<const char*>(row), table.row_size);
    return 0;
}

int RowNext(const char* function, const TableDef& table, int32_t previous, void* row)
{
    if (const int code = RecordList("next", function, previous)) return code;
    const auto& rows = platform.rows[table.name];
    return CopyRow(rows, previous == -1 ? rows.begin() : rows.upper_bound(previous), row);
}

int RecordNumber(const char* function, int argument)
{
    platform.calls.push_back(std::string(function) + " " + std::to_string(argument));
    return Failure(function);
}

// A text of a store or of the platform's own into a bounded buffer.
int CopyText(const std::map<std::string, std::string>& texts, const char* key, char* value, size_t size)
{
    const auto found = texts.find(key);
    snprintf(value, size, "%s", found == texts.end() ? "" : found->second.c_str());
    return found == texts.end() ? -1 : 0;
}

int RecordRead(const std::map<std::string, std::string>& texts, const char* key, char* value, size_t size)
{
    platform.calls.push_back(std::string("read ") + key);
    return CopyText(texts, key, value, size);
}

int RecordStore(std::map<std::string, std::string>& store, const char* name, const char* key, const char* value)
{
    platform.calls.push_back(std::string(name) + " " + key + " " + value);
    if (const int code = Failure(name)) return code;
    store[key] = value;
    return 0;
}

// The items of a message in words: texts as they are, integers in decimal. A payload that is a text
// without items, as forwarded events have, as it is.
std::string Words(const MessageHeader* message)
{
    std::string words;
    const std::string_view payload(reinterpret_cast<const char*>(message + 1), message->length);
    if (!kobd::PayloadIsSound(payload)) return " " + std::string(payload.substr(0, payload.find('\0')));
    TlvReader reader(payload);
    while (const auto item = reader.Next())
    {
        const bool integer = item->tag == kTagResult || item->tag == kTagRowIndex;
        words += ' ';
        words += integer ? std::to_string(item->Int().value_or(-1)) : std::string(item->Text().value_or("no text"));
    }
    return words;
}
}  // namespace
}  // namespace kobd::test

using namespace kobd::test;

int MessageInitialize(uint32_t module)
{
    char call[32];
    snprintf(call, sizeof call, "join %x", module);
    platform.calls.push_back(call);
    return Failure("MessageInitialize");
}

void MessageProccessRegister(const MsgHandler*) { platform.calls.push_back("register"); }
void MessageDestroy() { platform.calls.push_back("leave"); }

int MessageSend(MessageHeader* message)
{
    const bool notification =
        message->destination == kobd::kModuleNotify && message->message_class == kobd::kClassEvent;
    char module[16];
    snprintf(module, sizeof module, "send %x ", message->destination);
    platform.calls.push_back((notification ? "notify " : module) + std::to_string(message->id) + Words(message));
    platform.sent.emplace_back(reinterpret_cast<const char*>(message), sizeof(MessageHeader) + message->length);
    return Failure("MessageSend");
}

int MessageSendReply(MessageHeader* message)
{
    platform.reply.assign(reinterpret_cast<const char*>(message), sizeof(MessageHeader) + message->length);
    platform.calls.push_back("reply" + Words(message));
    return Failure("MessageSendReply");
}

int TlvPushIntToBuf(void* place, uint16_t tag, int32_t value)
{
    kobd::TlvWriter writer({static_cast<char*>(place), kobd::kIntItem});
    return writer.Int(tag, value) ? 8 : 0;
}

int TlvPushStringToBuf(void* place, uint16_t tag, const char* text)
{
    kobd::TlvWriter writer({static_cast<char*>(place), kobd::kItemHeader + strlen(text) + 1});
    return writer.Text(tag, text) ? static_cast<int>(writer.Size()) : 0;
}

int update_config() { return Record("update_config"); }
void LogModuleUpdate() { Record("LogModuleUpdate"); }
void checkFirstBootFlag() { Record("checkFirstBootFlag"); }
void checkUpgradeFlag() { Record("checkUpgradeFlag"); }
void kobd_lib_init() { Record("kobd_lib_init"); }
void initUssdEventSvr() { Record("initUssdEventSvr"); }
void updateArplistTimerInit() { Record("updateArplistTimerInit"); }
void pemixAlg_init() { Record("pemixAlg_init"); }
void kobd_lib_exit() { Record("kobd_lib_exit"); }

// The stores.
int nv_get(const char* key, char* value, size_t size)
{
    platform.calls.push_back(std::string("nv_get ") + key);
    return CopyText(platform.nvram, key, value, size);
}
int nvram_cpy(const char* key, char* value, size_t size) { return RecordRead(platform.nvram, key, value, size); }
int nvram_set(const char* key, const char* value) { return RecordStore(platform.nvram, "nvram", key, value); }
int kob_get_config(const char* key, char* value, size_t size) { return RecordRead(platform.config, key, value, size); }
int kob_set_config(const char* key, const char* value) { return RecordStore(platform.config, "config", key, value); }

// The connection services.
ConfigWanInterfaces g_stConfigWANIF;  // set by ResetPlatform
int setDualwanNetSelectMode_lte(const char* mode) { return RecordSet("setDualwanNetSelectMode_lte", mode); }
int ChangeConnectTime_net(int cellular) { return RecordNumber("ChangeConnectTime_net", cellular); }
int updateDdns(int reason) { return RecordNumber("updateDdns", reason); }
int ftpUpgrade(int reason) { return RecordNumber("ftpUpgrade", reason); }
int ntpUpdate(int reason) { return RecordNumber("ntpUpdate", reason); }
int killFtpUpgradeDaemon() { return Record("killFtpUpgradeDaemon"); }
int voipD2Vapp(int event) { return RecordNumber("voipD2Vapp", event); }
int volteD2Vapp(int event) { return RecordNumber("volteD2Vapp", event); }

int KobdEvtSend(uint32_t module, uint16_t id, const void*, int length)
{
    char call[48];
    snprintf(call, sizeof call, "event %x %d %d", module, id, length);
    platform.calls.push_back(call);
    return Failure("KobdEvtSend");
}

int getWanInterfaceCurrentTr069_net(char* name, size_t size) { return CopyText(platform.values, "tr069", name, size); }
int getWanInterfaceCurrentVOIP_net(char* name, size_t size) { return CopyText(platform.values, "voip", name, size); }
int getCurrWanInterfaceSNMP_net(char* name, size_t size) { return CopyText(platform.values, "snmp", name, size); }

#define DEFINE_GET(getter) \
    int getter(char* value) { return RecordGet(#getter, value); }
#define DEFINE_SET(setter) \
    int setter(const char* value) { return RecordSet(#setter, value); }
#define DEFINE_NOTHING(...)

// SHARED(f) and OWN(f) make two arguments of one, which shifts DEFINE_NOTHING to the third place.
#define SHARED(accessor) accessor, shared
#define OWN(accessor) accessor, own
#define THIRD(first, second, third, ...) third
#define PICK(define, ...) THIRD(__VA_ARGS__, DEFINE_NOTHING, define, unused)
#define GET(...) PICK(DEFINE_GET, __VA_ARGS__)(__VA_ARGS__)
#define SET(...) PICK(DEFINE_SET, __VA_ARGS__)(__VA_ARGS__)
#define OBJECT(name, type, getter, setter, ...) GET(getter) SET(setter)
#define RO(name, type, getter, ...) GET(getter)
#define WO(name, type, setter, ...) SET(setter)
#define ACTION(name, type, setter, ...) SET(setter)
#include "dictionary/catalogue/objects.def"
#undef GET
#undef SET
#undef SHARED

// The list operations. One that serves several tables works on the first one's rows.
#define DEFINE_ADD(function) \
    int function(int32_t* index) { return RowAdd(#function, TableOf(&kobd::TableOps::add, function), index); }
#define DEFINE_DEL(function) \
    int function(int32_t index) { return RowDel(#function, TableOf(&kobd::TableOps::del, function), index); }
#define DEFINE_ROW_GET(function)                                                       \
    int function(int32_t index, void* row)                                             \
    {                                                                                  \
        return RowGet(#function, TableOf(&kobd::TableOps::get, function), index, row); \
    }
#define DEFINE_ROW_SET(function)                                                       \
    int function(int32_t index, const void* row)                                       \
    {                                                                                  \
        return RowSet(#function, TableOf(&kobd::TableOps::set, function), index, row); \
    }
#define DEFINE_PATH(function)                                                 \
    int function(int32_t index, const char* path)                             \
    {                                                                         \
        return RecordList("path", #function, index, " " + std::string(path)); \
    }
#define DEFINE_NEXT(function)                                                               \
    int function(int32_t previous, void* row)                                               \
    {                                                                                       \
        return RowNext(#function, TableOf(&kobd::TableOps::next, function), previous, row); \
    }
#define SHARED(function) function, shared
#define ADD(...) PICK(DEFINE_ADD, __VA_ARGS__)(__VA_ARGS__)
#define DEL(...) PICK(DEFINE_DEL, __VA_ARGS__)(__VA_ARGS__)
#define GET(...) PICK(DEFINE_ROW_GET, __VA_ARGS__)(__VA_ARGS__)
#define SET(...) PICK(DEFINE_ROW_SET, __VA_ARGS__)(__VA_ARGS__)
#define PATH(...) PICK(DEFINE_PATH, __VA_ARGS__)(__VA_ARGS__)
#define NEXT(...) PICK(DEFINE_NEXT, __VA_ARGS__)(__VA_ARGS__)
#define VALIDATE(...)
#define TABLE(name, layout, max_rows, ...) __VA_ARGS__
#define OWN_LIST(...)
#define SAME_LIST(...)
#include "dictionary/catalogue/tables.def"
