// Handlers over the recording platform, and their promises.
#include "fuzz/recorded.h"

#include <unistd.h>

#include <cstring>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "daemon/handler_table.h"
#include "dictionary/records.h"
#include "fuzz/target.h"
#include "tests/recording_platform.h"
#include "tests/recording_shell.h"
#include "tests/requests.h"

namespace kobd::fuzz
{
using test::platform;

namespace
{
bool IsSet(std::string_view name) { return name.starts_with("ReqObjSet") || name.starts_with("ReqTableSet"); }

void CheckNothingLeft(const char* name)
{
    for (const TableDef& table : kTables)
        PROMISE(table.pending->first == nullptr, "%s left rows of %s pending", name, table.name);
    for (const ObjDef& object : kObjects)
        PROMISE(object.staged->text == nullptr, "%s left a value of %s staged", name, object.name);
}

void CheckReply(const char* name, const test::Answer& answer)
{
    const std::string_view payload = std::string_view(platform.reply).substr(sizeof(MessageHeader));
    PROMISE(platform.Calls("reply").size() == 1, "%s answered %zu times", name, platform.Calls("reply").size());
    PROMISE(payload.size() <= kPayloadMax, "%s answered %zu bytes", name, payload.size());
    TlvReader reader(payload);
    const auto result = reader.Next();
    PROMISE(result && result->tag == kTagResult && result->Int() == answer.result, "%s: no result first", name);
    PROMISE(PayloadIsSound(payload) || answer.result == 0, "%s: a broken refusal", name);
    while (reader.Next())
    {
    }
    PROMISE(!reader.Broken(), "%s: an item of the reply runs past its end", name);
    PROMISE(answer.returned == answer.result, "%s returned %d, answered %d", name, answer.returned, answer.result);
    PROMISE(answer.result == 0 || answer.payload == kIntItem, "%s refused with %zu bytes", name, answer.payload);
}

// Show and table dump: the file is the client's to remove.
void RemoveDump(const test::Answer& answer)
{
    for (const std::string& text : answer.texts)
        if (text.starts_with("/tmp/kobd-")) unlink(text.c_str());
}

void CheckSet(std::string_view name, int result)
{
    // A list that does not know a row answers 13 to its set; rows before it stay written.
    const bool may_be_half = result == kIndexNotFound;
    PROMISE(result == 0 || may_be_half || platform.Calls("set ").empty(), "%s answered %d and set something",
            name.data(), result);
    const bool commits = result == 0 && !name.ends_with("Silent");
    PROMISE(platform.Calls("update_config").size() == (commits ? 1 : 0), "%s answered %d and committed %zu times",
            name.data(), result, platform.Calls("update_config").size());
}
}  // namespace

void ResetRecorded(std::string_view bytes)
{
    test::ResetPlatform();
    test::ResetShell();
    for (const TableDef& table : kTables)
    {
        if (bytes.find(table.name) == bytes.npos) continue;
        for (const int32_t index : {1, 2})
        {
            std::string& row = platform.rows[table.name][index] = std::string(table.row_size, '\0');
            memcpy(row.data(), &index, sizeof index);
        }
    }
}

int CallAndCheck(const MsgHandler& row, std::string_view payload)
{
    const test::Answer answer = test::Ask(row.handler, payload);
    const bool request = (row.code & 0xFFFF) == kClassRequest;
    if (request)
        CheckReply(row.name, answer);
    else
        PROMISE(platform.reply.empty(), "%s answered an event", row.name);
    if (IsSet(row.name)) CheckSet(row.name, answer.result);
    RemoveDump(answer);
    CheckNothingLeft(row.name);
    return answer.result;
}

const MsgHandler& Handler(std::string_view name)
{
    for (const MsgHandler& row : kHandlers)
        if (row.handler != nullptr && row.name == name) return row;
    Broken(__FILE__, __LINE__, "no handler %s", name.data());
}
}  // namespace kobd::fuzz
