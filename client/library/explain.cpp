// Why the last call failed: from the request that was sent, the daemon's log, and the dictionary.
#include <algorithm>
#include <cerrno>

#include "client/dictionary/dictionary.h"
#include "client/library/connection.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
using Pairs = std::vector<NameAndValue>;

// What a refused request asked for. It is read before the client's buffers are used again.
struct Asked
{
    uint16_t id = 0;
    Pairs objects = {};                    // with their new values, where it has some
    std::vector<RowWithValues> rows = {};  // tables, with an index where it has one
};

constexpr int32_t kNoIndex = -1;

Asked ReadRequest(const Message& request)
{
    Asked asked = {request.Header()->id};
    kobd_bytes items = request.Payload();
    for (kobd_item item{}; kobd_bytes_next(&items, &item) == 1;)
    {
        const std::string text = item.text != nullptr ? item.text : "";
        if (item.tag == kTagObjectName) asked.objects.push_back({text, ""});
        if (item.tag == kTagTableName) asked.rows.push_back({text, kNoIndex});
        if (item.tag == kTagValue && !asked.objects.empty()) asked.objects.back().value = text;
        if (item.tag == kTagRowIndex && !asked.rows.empty()) asked.rows.back().index = item.number;
    }
    return asked;
}

Explained Simple(const std::string& reason) { return {.reason = reason, .text = reason}; }

std::string TextOf(const NameAndValue& pair) { return pair.name + "=" + pair.value; }

std::string TextOf(const RowWithValues& row) { return row.index == kNoIndex ? row.table : row.Text(); }

template <class Things>
std::string TextsOf(const Things& things)
{
    Words texts;
    for (const auto& one : things) texts.push_back(TextOf(one));
    return Joined(texts);
}

std::string WhyNoAnswer(const kobd_client& client)
{
    BusModule daemon;
    switch (client.code)
    {
        case kReplyTimeout: return "no answer within " + std::to_string(client.waited_ms) + " ms";
        case kInitializeFailed: return "the system has no message queue for the answer, see kobctl doctor";
        case kBufferLimit: return "a message of " + std::to_string(kMessageMax) + " bytes cannot hold this request";
        case kNotRunning:
            return BusModuleLook(kModuleKobd, &daemon) == EACCES ? "kobd runs as another user: be that user or root"
                                                                 : "kobd is not running on this bus";
        case kSystemError: return "the reply cannot be read";
        case kMallocFailed: return "the system has no memory left";
        case kTableFull: return "the daemon has no place for one more";
        default: return "kobd was not reached";
    }
}

// -- objects

// "NAME=VALUE: REASON; it takes RIGHT"; without a reason where there is none to tell.
Explained OfObject(const NameAndValue& pair, const std::string& reason, const std::string& right)
{
    Explained why = {.object = pair.name, .value = pair.value, .reason = reason};
    if (!right.empty()) why.right = right;
    const std::string takes = right.empty() ? "" : "it takes " + right;
    why.text = TextOf(pair) + ": " + reason + (reason.empty() || takes.empty() ? "" : "; ") + takes;
    return why;
}

// The pair that was refused, with the reason from the log or the dictionary. Where neither has one, all pairs with
// what their checks accept.
Explained WhyNotSet(const Pairs& pairs, const std::vector<LogLine>& log)
{
    Words passed;
    for (const NameAndValue& pair : pairs)
    {
        const ObjectEntry* object = FindObject(pair.name);
        const Fault fault = JudgeObject(pair.name, pair.value);
        const auto said = RefusalIn(log, pair.name, pair.value);
        if (said && object != nullptr)
        {
            Explained why = OfObject(pair, *said, Accepts(*object));
            if (said->empty()) why.reason = fault ? fault.reason : std::string(object->validator) + " refuses it";
            return why;
        }
        if (fault)
        {
            Explained why = OfObject(pair, fault.reason, fault.right);
            why.text = fault.Text(pair.name, pair.value);
            return why;
        }
        passed.push_back(TextOf(pair) + (object->validator != nullptr ? ": it takes " + Accepts(*object) : ""));
    }
    Explained why = {.reason = "the check of one of these values refuses it", .text = Joined(passed)};
    if (pairs.size() != 1) return why;
    const ObjectEntry& object = *FindObject(pairs[0].name);
    why.object = pairs[0].name;
    why.value = pairs[0].value;
    why.right = Accepts(object);
    why.reason = object.validator != nullptr ? std::string(object.validator) + " refuses it" : "the daemon refuses it";
    return why;
}

// Every value was found right, but the router could not apply one of them.
Explained WhyNotApplied(const Pairs& pairs)
{
    Words names;
    for (const NameAndValue& pair : pairs) names.push_back(pair.name);
    Explained why =
        Simple("the router could not set " + std::string(names.size() == 1 ? "" : "one of ") + Joined(names));
    if (pairs.size() != 1) return why;
    why.object = pairs[0].name;
    why.value = pairs[0].value;
    return why;
}

Explained OfSet(int code, const Pairs& pairs, const std::vector<LogLine>& log)
{
    const bool judged =
        std::ranges::any_of(pairs, [](const auto& one) { return bool(JudgeObject(one.name, one.value)); });
    return code == kInvalidArgument || judged ? WhyNotSet(pairs, log) : WhyNotApplied(pairs);
}

std::string WhyNotRead(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (object == nullptr) return NoSuchName("object", name);
    return object->access == Access::kWriteOnly ? name + " is write-only"
                                                : "the router could not read " + name + ", see the log";
}

Explained OfGet(int code, const Pairs& names)
{
    Explained why = Simple(TextsOf(names));
    if (names.size() != 1) return why;
    const std::string& name = names[0].name;
    why = Simple(code == kBufferLimit ? "the value of " + name + " does not fit" : WhyNotRead(name));
    why.object = name;
    return why;
}

// -- rows

void NoteIndex(void* context, const char*, int32_t index, const char* const*, const char* const*, size_t)
{
    static_cast<std::vector<int32_t>*>(context)->push_back(index);
}

Explained OfMissingRow(kobd_client* client, const std::vector<RowWithValues>& rows)
{
    for (const RowWithValues& row : rows)
    {
        std::vector<int32_t> present;
        if (kobd_rows(client, row.table.c_str(), NoteIndex, &present) != kSuccess) break;
        if (std::ranges::find(present, row.index) != present.end()) continue;
        Explained why = Simple(NoRow(row.table, row.index, present));
        why.table = row.table;
        why.index = row.index;
        return why;
    }
    return Simple(TextsOf(rows));
}

Explained OfMissingOperation(Operation operation, const std::vector<RowWithValues>& rows)
{
    for (const RowWithValues& row : rows)
        for (const Operation needed : {operation == kSetParentPath ? kAdd : operation, operation})
            if (const TableEntry* table = FindTable(row.table); table != nullptr && !table->Has(needed))
            {
                Explained why = Simple(NoOperation(*table, needed));
                why.table = row.table;
                return why;
            }
    return Simple(TextsOf(rows));
}

Operation OperationOf(uint16_t id)
{
    switch (id)
    {
        case kReqTableAdd: return kAdd;
        case kREQSubTableAdd: return kSetParentPath;
        case kReqTableDel: return kDel;
        case kReqTableGet: return kGet;
        case kReqTableDump: return kNext;
        default: return kSet;
    }
}

Explained OfRows(kobd_client* client, int code, uint16_t id, const std::vector<RowWithValues>& rows)
{
    const RowWithValues& first = rows.front();
    Explained why = Simple(TextsOf(rows));
    const TableEntry* table = FindTable(first.table);
    if (code == kIndexNotFound) return OfMissingRow(client, rows);
    if (code == kMethodUnavailable) return OfMissingOperation(OperationOf(id), rows);
    if (code == kNotFound && table == nullptr) why = Simple(NoSuchName("table", first.table));
    if (code == kTableFull && table != nullptr)
        why = Simple(first.table + " holds " + std::to_string(table->max_rows) + " rows, its maximum");
    if (code == kBufferLimit)
        why = Simple(TextsOf(rows) + " does not fit one reply, kobctl table dump " + first.table + " shows it");
    if (rows.size() != 1) return why;
    why.table = first.table;
    why.index = first.index;
    return why;
}

std::string ChangeText(const RowWithValues& row)
{
    std::string text = row.Text();
    for (const NameAndValue& one : row.values) text += " " + TextOf(one);
    return text;
}

bool IsCheckOf(const RowWithValues& row, const std::string& check)
{
    const TableEntry* table = FindTable(row.table);
    return table != nullptr && check == table->validator;
}

// The last line that a check of these rows wrote; nullptr when none did.
const LogLine* CheckLine(const std::vector<RowWithValues>& rows, const std::vector<LogLine>& log)
{
    const auto found = std::find_if(
        log.rbegin(), log.rend(),
        [&](const LogLine& line)
        { return std::ranges::any_of(rows, [&](const RowWithValues& row) { return IsCheckOf(row, line.function); }); });
    return found == log.rend() ? nullptr : &*found;
}

// The check of a row writes its reason to the log. Any of the check's rows may be the wrong one.
Explained OfCheck(const std::vector<RowWithValues>& changes, const std::vector<LogLine>& log)
{
    const LogLine* said = CheckLine(changes, log);
    std::vector<RowWithValues> rows = changes;
    if (said != nullptr) std::erase_if(rows, [&](const RowWithValues& row) { return !IsCheckOf(row, said->function); });
    Words texts;
    for (const RowWithValues& row : rows) texts.push_back(ChangeText(row));
    Explained why = {.text = (rows.size() > 1 ? "one of these rows: " : "") + Joined(texts)};
    const TableEntry* table = FindTable(rows.front().table);
    const std::string check = said != nullptr ? said->function : table != nullptr ? table->validator : "";
    why.reason = said != nullptr ? said->message + " (" + check + ")" : "the daemon refuses " + why.text;
    if (said != nullptr) why.text += ": " + why.reason;
    if (const std::string right = RuleOf(check); !right.empty() && (said != nullptr || changes.size() == 1))
    {
        why.right = right;
        why.text += "; it takes " + right;
    }
    if (rows.size() != 1) return why;
    why.table = rows[0].table;
    why.index = rows[0].index;
    return why;
}

Explained OfChanges(kobd_client* client, int code, const std::vector<RowWithValues>& changes)
{
    const std::vector<LogLine> log = client->log.Lines();
    const bool all_can_be_set = std::ranges::all_of(changes,
                                                    [](const RowWithValues& row)
                                                    {
                                                        const TableEntry* table = FindTable(row.table);
                                                        return table != nullptr && table->Has(kSet);
                                                    });
    if (code == kIndexNotFound || !all_can_be_set) return OfRows(client, code, kReqTableSet, changes);
    return OfCheck(changes, log);
}

Explained OfRefusal(kobd_client* client)
{
    const int code = client->code;
    const Asked asked = ReadRequest(client->request);
    const std::vector<RowWithValues> changes = client->changes;
    if (!changes.empty()) return OfChanges(client, code, changes);
    if (asked.id == kReqObjGet && !asked.objects.empty()) return OfGet(code, asked.objects);
    if (!asked.objects.empty()) return OfSet(code, asked.objects, client->log.Lines());
    if (!asked.rows.empty()) return OfRows(client, code, asked.id, asked.rows);
    return Simple("the daemon refuses the request");
}

// An explanation may have asked the daemon. The client then stands as after the refused call.
Explained Explain(kobd_client* client)
{
    const int code = client->code;
    const bool request = client->request.Header()->message_class == kClassRequest;
    if (!client->answered) return Simple(WhyNoAnswer(*client));
    Explained why = request ? OfRefusal(client) : Simple("the imitated router refuses the request");
    client->code = code;
    client->answered = true;
    client->left = {};
    if (why.reason.empty()) why.reason = "the daemon refuses the request";
    return why;
}

const char* Maybe(const std::optional<std::string>& text) { return text ? text->c_str() : nullptr; }
}  // namespace

const kobd_explanation* Explained::Face()
{
    face = {.code = code,
            .object = Maybe(object),
            .table = Maybe(table),
            .index = index,
            .column = Maybe(column),
            .value = Maybe(value),
            .reason = reason.c_str(),
            .right = Maybe(right),
            .text = text.c_str()};
    return &face;
}
}  // namespace kobd::client

const kobd_explanation* kobd_explain(kobd_client* client)
{
    using namespace kobd::client;
    if (client->code == kobd::kSuccess) return nullptr;
    if (!client->explained) client->explained = Explain(client);
    Explained& why = *client->explained;
    const bool by_system = why.code == kobd::kSystemError;  // its text ends with the system's own words
    if (why.face.text == nullptr && !by_system) why.text += ": " + CodeText(client->code);
    why.code = client->code;
    return why.Face();
}
