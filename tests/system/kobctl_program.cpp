// Running kobctl and replaying sessions.
#include "tests/system/kobctl_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "tests/namespaces.h"
#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
constexpr char kOutput[] = "/tmp/output";
constexpr char kErrors[] = "/tmp/errors";
constexpr char kPrompt[] = "$ kobctl ";

[[noreturn]] void ExecKobctl(int output, const std::vector<std::string>& words)
{
    const std::string program = kPrograms + "kobctl";
    const char* emulator = KOBD_EMULATOR;  // empty where kobctl runs by itself
    std::vector<const char*> arguments;
    if (*emulator != 0) arguments.push_back(emulator);
    arguments.push_back(program.c_str());
    for (const std::string& word : words) arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    dup2(output, STDOUT_FILENO);
    dup2(open(kErrors, O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    unsetenv("COLUMNS");
    setenv("KOBD_STATE_DIR", "/tmp/state", 1);  // the stores of the daemon under test, no one else's
    execvp(arguments[0], const_cast<char* const*>(arguments.data()));
    _exit(127);
}

std::vector<std::string> Split(const std::string& line)
{
    std::vector<std::string> words;
    bool quoted = false;
    bool in_word = false;
    for (const char c : line)
    {
        if (c == '\'') quoted = !quoted;
        if (c == ' ' && !quoted)
        {
            in_word = false;
            continue;
        }
        if (!in_word) words.emplace_back();
        in_word = true;
        if (c != '\'') words.back() += c;
    }
    return words;
}
}  // namespace

pid_t StartKobctlOn(int output, const std::vector<std::string>& words)
{
    const pid_t process = fork();
    if (process == 0) ExecKobctl(output, words);
    return process;
}

pid_t StartKobctl(const std::vector<std::string>& words)
{
    const int output = open(kOutput, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const pid_t process = StartKobctlOn(output, words);
    close(output);
    return process;
}

Ran ReadKobctl(pid_t process)
{
    int status = 0;
    waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), FileText(kOutput), FileText(kErrors)};
}

Ran RunKobctl(const std::vector<std::string>& words) { return ReadKobctl(StartKobctl(words)); }

Ran RunLine(const std::string& line) { return RunKobctl(Split(line)); }

std::string Replay(const std::string& transcript)
{
    std::string out;
    std::istringstream lines(transcript);
    for (std::string line; std::getline(lines, line);)
    {
        if (!line.starts_with(kPrompt)) continue;
        const Ran ran = RunKobctl(Split(line.substr(sizeof kPrompt - 1)));
        out += line + "\n" + ran.output;
        std::istringstream errors(ran.errors);
        for (std::string error; std::getline(errors, error);) out += "! " + error + "\n";
        if (ran.status != 0) out += "[" + std::to_string(ran.status) + "]\n";
    }
    return out;
}
}  // namespace kobd::test
