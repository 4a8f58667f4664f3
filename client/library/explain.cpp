// Why the last call failed: no answer, or a refusal.
#include "client/library/explain.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include "daemon/base/dump_file.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
Explained Simple(const std::string& reason) { return {.reason = reason, .text = reason}; }

namespace
{
// What a refused request asked for. It is read before the client's buffers are used again.
struct Asked
{
    uint16_t id = 0;
    Pairs objects = {};     // with their new values, where it has some
    ChangedRows rows = {};  // tables, with an index where it has one
};

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

// The user of the daemon's queue, by name where that is known; "another user" where the system does not tell. `process`
// is the last one that received from the queue, 0 where that is not known.
std::string UserOfDaemon(pid_t* process)
{
    *process = 0;
    FILE* queues = fopen("/proc/sysvipc/msg", "re");
    if (queues == nullptr) return "another user";
    std::string name = "another user";
    char line[256];
    while (fgets(line, sizeof line, queues) != nullptr)
    {
        int key = 0;
        int received = 0;
        unsigned uid = 0;
        if (sscanf(line, "%d %*d %*o %*u %*u %*d %d %u", &key, &received, &uid) != 3 ||
            key != static_cast<int>(kModuleKobd))
            continue;
        *process = received;
        struct passwd entry = {};
        struct passwd* user = nullptr;
        char texts[1024];
        const bool known = getpwuid_r(uid, &entry, texts, sizeof texts, &user) == 0 && user != nullptr;
        name = known ? user->pw_name : "user " + std::to_string(uid);
        break;
    }
    fclose(queues);
    return name;
}

// Why this user may not ask the daemon of another one.
std::string AnotherUsers()
{
    pid_t process = 0;
    const std::string user = UserOfDaemon(&process);
    char left[64];
    snprintf(left, sizeof left, "ipcrm -Q 0x%08X -S 0x%08X", kModuleKobd, kModuleKobd);
    if (process > 0 && kill(process, 0) != 0 && errno == ESRCH)
        return "a kobd of " + user + " has ended and left its place on the bus; " + user + " removes that with " + left;
    if (geteuid() == 0)
        return "kobd runs as " + user + ", and this root has not the capability CAP_IPC_OWNER: ask as " + user;
    return "kobd runs as " + user + ", and only " + (user == "root" ? "root" : user + " and root") + " may ask it";
}

std::string WhyNoAnswer(const kobd_client& client)
{
    BusModule daemon;
    switch (client.code)
    {
        case kReplyTimeout:
            return "no answer within " + std::to_string(client.waited_ms) + " ms" +
                   (DaemonIsBusy() ? ", kobd has another request in hand or is stuck" : "");
        case kInitializeFailed: return "the system has no message queue for the answer, see kobctl doctor";
        case kBufferLimit: return "a message of " + std::to_string(kMessageMax) + " bytes cannot hold this request";
        case kNotRunning:
            return BusModuleLook(kModuleKobd, &daemon) == EACCES ? AnotherUsers() : "kobd is not running on this bus";
        case kSystemError: return "the reply cannot be read";
        case kMallocFailed: return "the system has no memory left";
        case kTableFull: return "the daemon has no place for one more";
        default: return "kobd was not reached";
    }
}

Explained OfRefusal(kobd_client* client)
{
    const int code = client->code;
    const Asked asked = ReadRequest(client->request);
    if (code == kSystemError && (asked.id == kReqTableDump || asked.id == kReqShow))
        return Simple(std::string("kobd could not write its answer to a file ") + kDumpFilePrefix +
                      "*: see kobctl doctor");
    const ChangedRows changes = client->changes;
    if (!changes.empty()) return OfChanges(client, code, changes);
    if (asked.id == kReqObjGet && !asked.objects.empty()) return OfGet(code, asked.objects);
    if (!asked.objects.empty()) return OfSet(client, code, asked.objects);
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
            .text = text.c_str(),
            .changed = changed};
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
