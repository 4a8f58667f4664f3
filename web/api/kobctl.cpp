#include "web/api/kobctl.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

extern char** environ;

namespace kobd::web
{
namespace
{
constexpr size_t kOutputMost = 16 * 1024 * 1024;  // bytes

struct Pipe
{
    int ends[2] = {-1, -1};
    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0) throw Problem{503, std::string("No pipe to kobctl: ") + strerror(errno) + "."};
    }
    ~Pipe()
    {
        close(ends[0]);
        CloseInput();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void CloseInput()
    {
        if (ends[1] >= 0) close(ends[1]);
        ends[1] = -1;
    }
};

// Reads both pipes to their ends.
void ReadBoth(const Pipe& output, const Pipe& error, std::array<std::string, 2>* texts)
{
    pollfd waiting[] = {{output.ends[0], POLLIN, 0}, {error.ends[0], POLLIN, 0}};
    while (waiting[0].fd >= 0 || waiting[1].fd >= 0)
    {
        if (poll(waiting, 2, -1) < 0 && errno != EINTR) return;
        for (size_t i = 0; i < 2; ++i)
        {
            char bytes[4096];
            if (waiting[i].fd < 0 || waiting[i].revents == 0) continue;
            const ssize_t size = read(waiting[i].fd, bytes, sizeof bytes);
            if (size > 0 && (*texts)[i].size() < kOutputMost) (*texts)[i].append(bytes, static_cast<size_t>(size));
            if (size == 0 || (size < 0 && errno != EINTR)) waiting[i].fd = -1;
        }
    }
}

// The code in the last line of what `--json` prints; 0: there is none.
int CodeIn(std::string output)
{
    while (output.ends_with('\n')) output.pop_back();
    const Json failure = Json::parse(output.substr(output.rfind('\n') + 1), nullptr, false);
    return failure.is_object() ? failure.value("code", 0) : 0;
}

// "kobctl: undo: nothing was changed yet: Invalid argument (2)": without the program's name. Its last line says it.
Problem ProblemOf(int status, std::string error, const std::string& output)
{
    while (error.ends_with('\n')) error.pop_back();
    error.erase(0, error.rfind('\n') + 1);
    const std::string name = "kobctl: ";
    if (error.starts_with(name)) error.erase(0, name.size());
    Problem problem = {status == 2 ? 422 : 409, error.empty() ? "kobctl has failed without a word." : error};
    const size_t bracket = error.rfind('(');
    int code = bracket != error.npos && error.ends_with(')') ? atoi(error.c_str() + bracket + 1) : 0;
    if (code == 1 || code == 2) problem.status = 422;
    if (code == 0) code = CodeIn(output);
    if (code > 0) problem.more["code"] = code;
    if (code == 3 || code == 8) problem.status = 503;
    return problem;
}
}  // namespace

pid_t StartProgram(const std::string& path, const Words& words, int output, int error)
{
    std::vector<char*> arguments = {const_cast<char*>("kobctl")};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, 1);
    posix_spawn_file_actions_adddup2(&files, error, 2);
    sigset_t none;
    sigset_t usual;
    sigemptyset(&none);
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);  // which this program ignores
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setpgroup(&attributes, 0);  // Ctrl-C is for this program, which ends kobctl in its turn
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    pid_t process = -1;
    errno = posix_spawn(&process, path.c_str(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return errno == 0 ? process : -1;
}

std::string RunKobctlForText(const std::string& path, const Words& words)
{
    Pipe output;
    Pipe error;
    const pid_t process = StartProgram(path, words, output.ends[1], error.ends[1]);
    if (process < 0) throw Problem{503, path + " cannot be run: " + strerror(errno) + "."};
    output.CloseInput();
    error.CloseInput();
    std::array<std::string, 2> texts;
    ReadBoth(output, error, &texts);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
    constexpr int kNotSaved = 3;  // it was done, and the output says that it was not saved
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotSaved && !texts[0].empty()) return texts[0];
    if (status != 0) throw ProblemOf(WIFEXITED(status) ? WEXITSTATUS(status) : 1, texts[1], texts[0]);
    return texts[0];
}

Json RunKobctl(const std::string& path, Words words)
{
    words.emplace_back("--json");
    Json json = Json::parse(RunKobctlForText(path, words), nullptr, false);
    return json.is_discarded() ? Json() : json;
}

const std::string& NoOption(const std::string& word)
{
    if (word.empty() || word.front() == '-') throw Problem{422, "'" + word + "' is no name."};
    if (word.find('\0') != word.npos) throw Problem{422, "A name has no zero byte."};
    return word;
}
}  // namespace kobd::web
