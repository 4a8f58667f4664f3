#include "web/api/scenario_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "web/api/kobctl.h"

namespace kobd::web
{
ScenarioRun::~ScenarioRun()
{
    Stop();
    if (follower_.joinable()) follower_.join();
}

void ScenarioRun::Start(const std::string& name, const std::string& speed)
{
    const std::lock_guard lock(mutex_);
    if (process_ != 0) throw Problem{409, "The scenario " + name_ + " plays; stop it first."};
    if (follower_.joinable()) follower_.join();  // has ended with the one before
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw Problem{503, std::string("No pipe to kobctl: ") + strerror(errno) + "."};
    process_ = StartProgram(kobctl_, {"sim", "run", name, "--json", "--speed", speed}, ends[1], ends[1]);
    const int why = errno;
    close(ends[1]);
    if (process_ < 0)
    {
        process_ = 0;
        close(ends[0]);
        throw Problem{503, kobctl_ + " cannot be run: " + strerror(why) + "."};
    }
    name_ = name;
    follower_ = std::thread(&ScenarioRun::Follow, this, ends[0]);
}

bool ScenarioRun::Stop()
{
    const std::lock_guard lock(mutex_);
    if (process_ != 0) kill(process_, SIGINT);
    return process_ != 0;
}

std::string ScenarioRun::Playing()
{
    const std::lock_guard lock(mutex_);
    return process_ != 0 ? name_ : "";
}

// Until it ends: a line is a step, or what kobctl says when it fails.
void ScenarioRun::Follow(int output)
{
    FILE* lines = fdopen(output, "r");
    std::string said;
    Tell({{"playing", true}});
    for (char line[4096]; lines != nullptr && fgets(line, sizeof line, lines) != nullptr;)
    {
        Json step = Json::parse(line, nullptr, false);
        if (step.is_object())
            Tell({{"playing", true}, {"time", step["at"]}, {"step", step["step"]}});
        else
            said = line;
    }
    if (lines != nullptr) fclose(lines);
    // Until it has been waited for, its number is nobody else's, and Stop may use it.
    siginfo_t end = {};
    while (waitid(P_PID, static_cast<id_t>(process_), &end, WEXITED | WNOWAIT) != 0 && errno == EINTR) continue;
    {
        const std::lock_guard lock(mutex_);
        waitpid(process_, nullptr, 0);
        process_ = 0;
    }
    while (said.ends_with('\n')) said.pop_back();
    Tell({{"playing", false}, {"said", said}});
}

void ScenarioRun::Tell(Json event)
{
    event["name"] = name_;
    connections_.Broadcast("event: scenario\ndata: " + TextOf(event) + "\n\n");
}
}  // namespace kobd::web
