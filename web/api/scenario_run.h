// The scenario that plays, one at a time: kobctl plays it, and each of its steps becomes an event.
#pragma once

#include <sys/types.h>

#include <mutex>
#include <string>
#include <thread>

#include "web/server/connections.h"
#include "web/server/problem.h"

namespace kobd::web
{
class ScenarioRun
{
public:
    ScenarioRun(Connections& connections, std::string kobctl) : connections_(connections), kobctl_(std::move(kobctl)) {}
    ~ScenarioRun();
    ScenarioRun(const ScenarioRun&) = delete;
    ScenarioRun& operator=(const ScenarioRun&) = delete;

    // Throws a Problem while another one plays, or when it cannot be started.
    void Start(const std::string& name, const std::string& speed);

    // Ends the one that plays, with what it has simulated. False: none plays.
    bool Stop();

    // The name, or the empty text.
    std::string Playing();

private:
    void Follow(int output);
    void Tell(Json event);

    Connections& connections_;
    std::string kobctl_;
    std::mutex mutex_ = {};
    std::thread follower_ = {};
    std::string name_ = {};  // of the one that plays
    pid_t process_ = 0;      // 0: none
};
}  // namespace kobd::web
