// kobctl: reads and changes the router's objects and tables from a terminal.
#include <csignal>

#include "client/pending_set.h"
#include "client/run_command.h"

int main(int count, char** arguments)
{
    using namespace kobd::client;
    signal(SIGPIPE, SIG_DFL);  // a reader that has enough ends kobctl without a word
    const Words words(arguments + 1, arguments + count);
    RestoreOverdue(words.empty() ? "" : words.front());
    return RunCommand(words, {});
}
