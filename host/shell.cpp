// The shell runners of the host platform: /bin/sh with a pipe for its standard output.
#include "platform/shell.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "daemon/base/clock.h"
#include "daemon/base/shell_process.h"

using namespace kobd;

namespace
{
constexpr int64_t kCommandMs = 10000;    // for a command as a whole: a stuck one must not stop the daemon
constexpr long kShortestLookNs = 50000;  // between looks at a shell that is about to end, doubled each time
constexpr long kLongestLookNs = 5000000;

// A router has no locales: its commands print the same in every country. Before main, since the daemon starts its first
// commands before it calls any hook.
[[gnu::constructor]] void UseLocaleOfRouter() { setenv("LC_ALL", "C", 1); }

// What is kept of a command's output.
struct Output
{
    char* text;
    size_t size;  // bytes, with the zero byte
    size_t length = 0;

    void Take(const char* bytes, size_t count)
    {
        const size_t kept = size == 0 ? 0 : std::min(count, size - 1 - length);
        memcpy(text + length, bytes, kept);
        length += kept;
        if (size != 0) text[length] = 0;
    }
};

enum class Pipe
{
    kOpen,
    kClosed,
};

// Reads what is there now.
Pipe Drain(int pipe, Output* output)
{
    char block[4096];
    for (;;)
    {
        const ssize_t got = read(pipe, block, sizeof block);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errno == EAGAIN ? Pipe::kOpen : Pipe::kClosed;
        if (got == 0) return Pipe::kClosed;
        output->Take(block, static_cast<size_t>(got));
    }
}

// Reads until the shell has ended; what it left running may hold the pipe open for as long as it
// likes. The shell's exit status, -1 when it had to be ended.
int Collect(pid_t process, int pipe, Output* output)
{
    const int64_t deadline = NowMs() + kCommandMs;
    timespec look = {0, kLongestLookNs};
    pollfd readable = {pipe, POLLIN, 0};
    int result = -1;
    while (!ShellEnded(process, &result))
    {
        if (NowMs() >= deadline)
        {
            EndShell(process);
            return -1;
        }
        if (readable.fd < 0) look.tv_nsec = std::min(look.tv_nsec * 2, kLongestLookNs);
        if (ppoll(&readable, 1, &look, nullptr) <= 0 || Drain(pipe, output) == Pipe::kOpen) continue;
        readable.fd = -1;  // its end is near
        look.tv_nsec = kShortestLookNs;
    }
    Drain(pipe, output);  // printed before its end
    return result;
}

int RunForOutput(const char* command, Output output)
{
    if (output.size != 0) *output.text = 0;
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0) return -1;
    const pid_t process = StartShell(command, pipe[1]);
    close(pipe[1]);
    fcntl(pipe[0], F_SETFL, O_NONBLOCK);  // cannot fail for a pipe
    const int result = process > 0 ? Collect(process, pipe[0], &output) : -1;
    close(pipe[0]);
    if (result == -1 && output.size != 0) *output.text = 0;
    return result;
}
}  // namespace

int shell_cmd_return_file_all(const char* command, char* output, size_t size)
{
    return RunForOutput(command, {output, size});
}

int shell_cmd_return_str(const char* command, char* output, size_t size)
{
    const int result = RunForOutput(command, {output, size});
    if (size != 0) output[strcspn(output, "\n")] = 0;
    return result;
}
