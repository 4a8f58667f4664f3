// A real daemon for system tests: started in the foreground on a state folder of its own, ended by
// its process id.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "daemon/base/messages.h"
#include "platform/bus_client.h"

namespace kobd::test
{
class DaemonProcess
{
public:
    explicit DaemonProcess(std::string state_folder) : state_folder_(std::move(state_folder)) {}
    ~DaemonProcess();

    // Starts the daemon and waits until it answers. False when it did not within ten seconds.
    bool Start();

    // Starts the daemon without waiting for it. It ends with this process at the latest.
    pid_t Spawn();

    // Sends the signal and waits for the end; the wait status.
    int End(int signal);

    pid_t Process() const { return process_; }

private:
    std::string state_folder_;
    pid_t process_ = -1;
};

struct Answer
{
    int bus = 0;      // 0, or why there is no reply
    int result = -1;  // the result item
    std::vector<std::string> texts = {};
    std::string items = {};  // bytes of what follows the result
};

// One request of these bytes over a bus connection of its own.
Answer RequestItems(uint16_t id, const std::string& items, int timeout_ms = 5000);

// One request of texts.
Answer Request(uint16_t id, const std::vector<std::pair<uint16_t, std::string>>& items, int timeout_ms = 5000);

// One object alone. The result, -1 without a reply; the value, "nothing" without one.
int SetObject(const std::string& name, const std::string& value, uint16_t how = kReqObjSet);
std::string GetObject(const std::string& name);
}  // namespace kobd::test
