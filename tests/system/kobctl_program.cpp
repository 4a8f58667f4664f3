// Running lines of a shell that finds kobctl.
#include "tests/system/kobctl_program.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <sstream>

#include "tests/process_setup.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
constexpr char kOutput[] = "/tmp/output";
constexpr char kErrors[] = "/tmp/errors";

int OpenAnew(const char* path) { return open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); }

pid_t StartShell(const std::string& line, int output)
{
    PutOnPath("kobctl", Exec("kobctl"));
    const pid_t process = fork();
    if (process != 0) return process;
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a shell that waits for what never comes ends with its test
    dup2(output >= 0 ? output : OpenAnew(kOutput), STDOUT_FILENO);
    dup2(OpenAnew(kErrors), STDERR_FILENO);
    unsetenv("COLUMNS");
    setenv("KOBD_STATE_DIR", "/tmp/state", 1);  // the stores of the daemon under test, no one else's
    execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
    _exit(127);
}
}  // namespace

std::string Ran::Text() const
{
    std::string text = output;
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);) text += "! " + line + "\n";
    return status == 0 ? text : text + "[" + std::to_string(status) + "]\n";
}

Ran RunShell(const std::string& line) { return ReadKobctl(StartShell(line, -1)); }

Ran RunLine(const std::string& words) { return RunShell("kobctl " + words); }

std::string Said(const std::string& words) { return RunLine(words).Text(); }

pid_t StartKobctl(const std::string& words, int output) { return StartShell("exec kobctl " + words, output); }

Ran ReadKobctl(pid_t process)
{
    int status = 0;
    waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), FileText(kOutput), FileText(kErrors)};
}
}  // namespace kobd::test
