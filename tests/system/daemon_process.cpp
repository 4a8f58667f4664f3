// Starting and ending real daemons, and asking them.
#include "tests/system/daemon_process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "daemon/base/clock.h"
#include "tests/items.h"
#include "tests/namespaces.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
DaemonProcess::~DaemonProcess()
{
    if (process_ > 0) End(SIGKILL);
}

pid_t DaemonProcess::Spawn()
{
    process_ = fork();
    if (process_ != 0) return process_;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("KOBD_STATE_DIR", state_folder_.c_str(), 1);
    dup2(open("/tmp/kobd.out", O_WRONLY | O_CREAT | O_APPEND, 0600), STDOUT_FILENO);
    const std::string program = kPrograms + "kobd";
    if (const std::string emulator = Emulator(); !emulator.empty())
        execlp(emulator.c_str(), emulator.c_str(), program.c_str(), "-F", nullptr);
    execl(program.c_str(), program.c_str(), "-F", nullptr);
    _exit(127);
}

bool DaemonProcess::Start()
{
    Spawn();
    const int64_t deadline = NowMs() + 10000;
    while (Request(kReqObjGet, {{kTagObjectName, "webHttpPort"}}, 1000).bus != 0)
    {
        if (NowMs() > deadline) return false;
        usleep(5000);
    }
    return true;
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
    for (const auto& [tag, text] : items) bytes += TextItem(tag, text);
    return RequestItems(id, bytes, timeout_ms);
}

int SetObject(const std::string& name, const std::string& value, uint16_t how)
{
    return Request(how, {{kTagObjectName, name}, {kTagValue, value}}).result;
}

std::string GetObject(const std::string& name)
{
    const Answer answer = Request(kReqObjGet, {{kTagObjectName, name}});
    return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
}

Answer RequestItems(uint16_t id, const std::string& items, int timeout_ms)
{
    struct Message
    {
        MessageHeader header;
        char payload[kPayloadMax];
    } request = {}, reply = {};
    if (items.size() > kPayloadMax) return {.bus = -1};
    request.header.destination = kModuleKobd;
    request.header.message_class = kClassRequest;
    request.header.id = id;
    request.header.length = static_cast<uint16_t>(items.size());
    memcpy(request.payload, items.data(), items.size());

    Answer answer;
    BusClient client;
    answer.bus = BusClientOpen(&client);
    if (answer.bus != 0) return answer;
    answer.bus = BusClientCall(&client, &request.header, &reply.header, timeout_ms);
    BusClientClose(&client);
    if (answer.bus != 0) return answer;

    const std::string_view payload(reply.payload, reply.header.length);
    TakeReply(payload, &answer.result, &answer.texts);
    if (payload.size() > kIntItem) answer.items = payload.substr(kIntItem);
    return answer;
}
}  // namespace kobd::test
