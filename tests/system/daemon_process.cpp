// Starting and ending real daemons, and asking them.
#include "tests/system/daemon_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "daemon/base/messages.h"
#include "tests/items.h"
#include "tests/namespaces.h"

namespace kobd::test
{
namespace
{
void ExecDaemon(const std::string& state_folder)
{
    setenv("KOBD_STATE_DIR", state_folder.c_str(), 1);
    const int output = open("/tmp/kobd.out", O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(output, STDOUT_FILENO);
    const std::string program = kPrograms + "kobd";
    const char* emulator = getenv("KOBD_EMULATOR");
    if (emulator == nullptr) emulator = KOBD_EMULATOR;  // empty where the daemon runs by itself
    if (*emulator != 0)
        execlp(emulator, emulator, program.c_str(), "-F", nullptr);
    else
        execl(program.c_str(), program.c_str(), "-F", nullptr);
    _exit(127);
}
}  // namespace

DaemonProcess::DaemonProcess(std::string state_folder) : state_folder_(std::move(state_folder)) {}

DaemonProcess::~DaemonProcess()
{
    if (process_ > 0) End(SIGKILL);
}

pid_t DaemonProcess::Spawn()
{
    const pid_t process = fork();
    if (process == 0) ExecDaemon(state_folder_);
    return process;
}

bool DaemonProcess::Start()
{
    process_ = Spawn();
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        if (Request(kGet, {{kTagObjectName, "webHttpPort"}}, 1000).bus == 0) return true;
        usleep(100000);
    }
    return false;
}

int DaemonProcess::End(int signal)
{
    int status = 0;
    kill(process_, signal);
    waitpid(process_, &status, 0);
    process_ = -1;
    return status;
}

Answer Request(uint16_t id, const std::vector<std::pair<uint16_t, std::string>>& items, int timeout_ms)
{
    std::string bytes;
    for (const auto& [tag, text] : items)
    {
        if (text.size() >= UINT16_MAX) return {.bus = -1};
        bytes += TextItem(tag, text);
    }
    return RequestItems(id, bytes, timeout_ms);
}

int SetObject(const std::string& name, const std::string& value, uint16_t how)
{
    return Request(how, {{kTagObjectName, name}, {kTagValue, value}}).result;
}

std::string GetObject(const std::string& name)
{
    const Answer answer = Request(kGet, {{kTagObjectName, name}});
    return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
}

Answer RequestItems(uint16_t id, const std::string& items, int timeout_ms)
{
    alignas(MessageHeader) char request[kMessageMax] = {};
    alignas(MessageHeader) char reply[kMessageMax] = {};
    auto* header = reinterpret_cast<MessageHeader*>(request);
    auto* answered = reinterpret_cast<MessageHeader*>(reply);
    if (items.size() > kPayloadMax) return {.bus = -1};
    memcpy(header + 1, items.data(), items.size());
    header->destination = kModuleKobd;
    header->message_class = kClassRequest;
    header->id = id;
    header->length = static_cast<uint16_t>(items.size());

    Answer answer;
    BusClient client;
    answer.bus = BusClientOpen(&client);
    if (answer.bus != 0) return answer;
    answer.bus = BusClientCall(&client, header, answered, timeout_ms);
    BusClientClose(&client);
    if (answer.bus != 0) return answer;

    const std::string_view payload(reply + sizeof(MessageHeader), answered->length);
    TakeReply(payload, &answer.result, &answer.texts);
    if (payload.size() > kIntItem) answer.items = payload.substr(kIntItem);
    return answer;
}
}  // namespace kobd::test
