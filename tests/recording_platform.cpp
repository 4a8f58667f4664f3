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
// What the test chose the function to answer.
int Failure(const std::string& function)
{
    const auto found = platform.failures.find(function);
    return found == platform.failures.end() ? 0 : found->second;
}

// Writes the call down; answers as the test chose.
int Record(const std::string& call, const std::string& function)
{
    platform.calls.push_back(call);
    return Failure(function);
}

int Record(const std::string& function) { return Record(function, function); }

int RecordNumber(const std::string& function, int argument)
{
    return Record(function + " " + std::to_string(argument), function);
}

int RecordGet(const std::string& getter, char* value)
{
    if (const auto found = platform.values.find(getter); found != platform.values.end())
        memcpy(value, found->second.c_str(), found->second.size() + 1);
    return Record("get " + getter, getter);
}

int RecordSet(const std::string& setter, const char* value)
{
    if (platform.during_set) platform.during_set();
    return Record("set " + setter + " " + value, setter);
}

// A text of a store or of the platform's own into a bounded buffer.
int CopyText(const std::map<std::string, std::string>& texts, const char* key, char* value, size_t size)
{
    const auto found = texts.find(key);
    snprintf(value, size, "%s", found == texts.end() ? "" : found->second.c_str());
    return found == texts.end() ? -1 : 0;
}

int RecordRead(const char* name, const std::map<std::string, std::string>& texts, const char* key, char* value,
               size_t size)
{
    Record(std::string(name) + " " + key);
    return CopyText(texts, key, value, size);
}

int RecordStore(std::map<std::string, std::string>& store, const char* name, const char* key, const char* value)
{
    if (const int code = Record(std::string(name) + " " + key + " " + value, name)) return code;
    store[key] = value;
    return 0;
}

// A list operation; it may fail for every row or for the one of this index.
int RecordList(const char* operation, const std::string& function, int32_t index, const std::string& path = "")
{
    const std::string indexed = function + " " + std::to_string(index);
    const int code = Record(operation + (" " + indexed) + path, function);
    return code != 0 ? code : Failure(indexed);
}

// The list of rows that the operation works on: that of the first table which names it.
template <typename Function>
const TableDef& TableOf(Function TableOps::*operation, Function function)
{
    for (const TableDef& table : kTables)
        if (table.ops->*operation == function) return table;
    abort();  // every operation is made from a row of the catalogue
}

template <typename Function>
std::map<int32_t, std::string>& RowsOf(Function TableOps::*operation, Function function)
{
    static std::map<int32_t, std::string> none;
    const auto found = platform.rows.find(TableOf(operation, function).name);
    return found != platform.rows.end() ? found->second : none;
}

int CopyRow(const std::map<int32_t, std::string>& rows, std::map<int32_t, std::string>::const_iterator found, void* row)
{
    if (found == rows.end()) return kIndexNotFound;
    memcpy(row, found->second.data(), found->second.size());
    return 0;
}

// As a list would: a new row is full of zeros but for its index, which is above all others.
int RowAdd(const char* function, const TableDef& table, int32_t* index)
{
    if (const int code = RecordList("add", function, -1)) return code;
    auto& rows = platform.rows[table.name];
    *index = rows.empty() ? 1 : rows.rbegin()->first + 1;
    std::string& row = rows[*index] = std::string(table.row_size, '\0');
    memcpy(row.data(), index, sizeof *index);
    return 0;
}

int RowSet(std::map<int32_t, std::string>& rows, int32_t index, const void* row)
{
    const auto found = rows.find(index);
    if (found == rows.end()) return kIndexNotFound;
    memcpy(found->second.data(), row, found->second.size());
    return 0;
}

int RowNext(const std::map<int32_t, std::string>& rows, int32_t previous, void* row)
{
    return CopyRow(rows, previous == -1 ? rows.begin() : rows.upper_bound(previous), row);
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
    return Record(call, "MessageInitialize");
}

void MessageProccessRegister(const MsgHandler*) { Record("register"); }
void MessageDestroy() { Record("leave"); }

int MessageSend(MessageHeader* message)
{
    const bool notification =
        message->destination == kobd::kModuleNotify && message->message_class == kobd::kClassEvent;
    char module[16];
    snprintf(module, sizeof module, "send %x ", message->destination);
    platform.sent.emplace_back(reinterpret_cast<const char*>(message), sizeof(MessageHeader) + message->length);
    return Record((notification ? "notify " : module) + std::to_string(message->id) + Words(message), "MessageSend");
}

int MessageSendReply(MessageHeader* message)
{
    platform.reply.assign(reinterpret_cast<const char*>(message), sizeof(MessageHeader) + message->length);
    return Record("reply" + Words(message), "MessageSendReply");
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
int nv_get(const char* key, char* value, size_t size) { return RecordRead("nv_get", platform.nvram, key, value, size); }
int nvram_cpy(const char* key, char* value, size_t size)
{
    return RecordRead("read", platform.nvram, key, value, size);
}
int nvram_set(const char* key, const char* value) { return RecordStore(platform.nvram, "nvram", key, value); }
int kob_get_config(const char* key, char* value, size_t size)
{
    return RecordRead("read", platform.config, key, value, size);
}
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
    return Record(call, "KobdEvtSend");
}

int getWanInterfaceCurrentTr069_net(char* name, size_t size) { return CopyText(platform.values, "tr069", name, size); }
int getWanInterfaceCurrentVOIP_net(char* name, size_t size) { return CopyText(platform.values, "voip", name, size); }
int getCurrWanInterfaceSNMP_net(char* name, size_t size) { return CopyText(platform.values, "snmp", name, size); }

#define DEFINE_GET(getter) \
    int getter(char* value) { return RecordGet(#getter, value); }
#define DEFINE_SET(setter) \
    int setter(const char* value) { return RecordSet(#setter, value); }
#define DEFINE_ACTION(setter) DEFINE_SET(setter)
#include "dictionary/catalogue/accessor_definitions.def"

// The list operations.
#define DEFINE_ADD(function) \
    int function(int32_t* index) { return RowAdd(#function, TableOf(&kobd::TableOps::add, function), index); }
// An operation on a row; `result` is what it answers when it does not fail.
#define DEFINE(word, function, index, parameters, result)                      \
    int function parameters                                                    \
    {                                                                          \
        [[maybe_unused]] auto& rows = RowsOf(&kobd::TableOps::word, function); \
        const int code = RecordList(#word, #function, index);                  \
        return code != 0 ? code : result;                                      \
    }
#define DEFINE_DEL(function) \
    DEFINE(del, function, index, (int32_t index), rows.erase(index) != 0 ? 0 : int{kobd::kIndexNotFound})
#define DEFINE_ROW_GET(function) \
    DEFINE(get, function, index, (int32_t index, void* row), CopyRow(rows, rows.find(index), row))
#define DEFINE_ROW_SET(function) \
    DEFINE(set, function, index, (int32_t index, const void* row), RowSet(rows, index, row))
#define DEFINE_NEXT(function) \
    DEFINE(next, function, previous, (int32_t previous, void* row), RowNext(rows, previous, row))
#define DEFINE_PATH(function)                                                 \
    int function(int32_t index, const char* path)                             \
    {                                                                         \
        return RecordList("path", #function, index, " " + std::string(path)); \
    }
#include "dictionary/catalogue/operation_definitions.def"
