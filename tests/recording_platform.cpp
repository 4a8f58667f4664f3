// Every platform function the daemon calls, recorded.
#include "tests/recording_platform.h"

#include <cstring>

#include "daemon/tlv.h"
#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/table_operations.h"
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

int RecordList(const char* operation, const char* function, int32_t index = -1)
{
    platform.calls.push_back(std::string(operation) + " " + function + " " + std::to_string(index));
    return Failure(function);
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
        words += integer ? std::to_string(item->Int().value()) : std::string(item->Text().value());
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

// The list operations: "add FUNCTION", "get FUNCTION 3". Rows are not kept; get leaves the block.
#define DEFINE_ADD(function) \
    int function(int32_t*) { return RecordList("add", #function); }
#define DEFINE_DEL(function) \
    int function(int32_t index) { return RecordList("del", #function, index); }
#define DEFINE_ROW_GET(function) \
    int function(int32_t index, void*) { return RecordList("get", #function, index); }
#define DEFINE_ROW_SET(function) \
    int function(int32_t index, const void*) { return RecordList("set", #function, index); }
#define DEFINE_PATH(function) \
    int function(int32_t index, const char*) { return RecordList("path", #function, index); }
#define DEFINE_NEXT(function) \
    int function(int32_t previous, void*) { return RecordList("next", #function, previous); }
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
