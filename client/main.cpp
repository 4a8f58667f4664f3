// kobctl: reads and changes the router's objects and tables from a terminal.
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "client/commands/commands.h"
#include "client/state/pending_set.h"

int main(int count, char** arguments)
{
    using namespace kobd::client;
    // musl line-buffers a pipe and drops what it failed to write. Buffer fully, so that FlushOutput can say why.
    static char buffer[64 * 1024];
    if (isatty(STDOUT_FILENO) == 0) setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    signal(SIGPIPE, SIG_DFL);  // a reader that goes away ends kobctl without a word
    const Words words(arguments + 1, arguments + count);
    if (const std::string said = RestoreOverdue(words.empty() ? "" : words.front()); !said.empty()) SayError(said);
    if (words.empty() && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) return RunPrompt();
    return RunCommand(words, {});
}
