// Every platform function the daemon calls, recorded.
#include "tests/recording_platform.h"

#include <cstdlib>
#include <cstring>

#include "daemon/result.h"
#include "daemon/tlv.h"
#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/table_operations.h"
#include "dictionary/records.h"
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
    g_stConfigWANIF = {};
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

int NvramGet(const char* function, const char* key, char* value, size_t size)
{
    platform.calls.push_back(std::string(function) + " " + key);
    const auto found = platform.nvram.find(key);
    if (size > 0) snprintf(value, size, "%s", found == platform.nvram.end() ? "" : found->second.c_str());
    return found == platform.nvram.end() ? -1 : Failure(function);
}

// The items of a message in words: texts as they are, integers in decimal.
std::string Words(const MessageHeader* message)
{
    std::string words;
    TlvReader reader({reinterpret_cast<const char*>(message + 1), message->length});
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
    platform.calls.push_back((notification ? "notify " : "send ") + std::to_string(message->id) + Words(message));
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

int nv_get(const char* key, char* value, size_t size) { return NvramGet("nv_get", key, value, size); }
int nvram_cpy(const char* key, char* value, size_t size) { return NvramGet("nvram_cpy", key, value, size); }

int nvram_set(const char* key, const char* value)
{
    platform.calls.push_back(std::string("nvram_set ") + key + " " + value);
    const int code = Failure("nvram_set");
    if (code == 0) platform.nvram[key] = value;
    return code;
}

ConfigWanInterfaces g_stConfigWANIF = {};

int update_config() { return Record("update_config"); }
void LogModuleUpdate() { Record("LogModuleUpdate"); }
void checkFirstBootFlag() { Record("checkFirstBootFlag"); }
void checkUpgradeFlag() { Record("checkUpgradeFlag"); }
void kobd_lib_init() { Record("kobd_lib_init"); }
void initUssdEventSvr() { Record("initUssdEventSvr"); }
void updateArplistTimerInit() { Record("updateArplistTimerInit"); }
void pemixAlg_init() { Record("pemixAlg_init"); }
void kobd_lib_exit() { Record("kobd_lib_exit"); }

#define DEFINE_GET(getter) \
    int getter(char* value) { return RecordGet(#getter, value); }
#define DEFINE_SET(setter) \
    int setter(const char* value) { return RecordSet(#setter, value); }
#define DEFINE_NOTHING(...)

// SHARED(f) makes two arguments of one, which shifts DEFINE_NOTHING to the third place.
#define SHARED(accessor) accessor, shared
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
#define ALL(stem) ADD(stem##Add) DEL(stem##Del) GET(stem##Get) SET(stem##Set) PATH(stem##SetPPath) NEXT(stem##Next)
#define TABLE(name, layout, max_rows, ...) __VA_ARGS__
#define OWN_LIST(...)
#define SAME_LIST(...)
#include "dictionary/catalogue/tables.def"
