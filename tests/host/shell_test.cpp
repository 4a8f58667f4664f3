// The shell runners: everything a command prints, and no more waiting than it deserves.
#include "platform/shell.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "tests/host/in_child.h"

namespace kobd::test
{
namespace
{
using namespace std::chrono_literals;

using Printed = std::pair<int, std::string>;  // the status and the text

// A block of exactly `size` bytes, so that the sanitizers see a byte written beside it.
Printed Run(int (*runner)(const char*, char*, size_t), const std::string& command, size_t size = 4096)
{
    std::vector<char> output(size, 'x');
    const int status = runner(command.c_str(), output.data(), size);
    return {status, output.data()};
}

Printed All(const std::string& command, size_t size = 4096) { return Run(shell_cmd_return_file_all, command, size); }
Printed Line(const std::string& command, size_t size = 4096) { return Run(shell_cmd_return_str, command, size); }

TEST(Shell, TakesWhatACommandPrints)
{
    const struct
    {
        const char* command;
        int status;
        const char* all;
        const char* line;
    } kCases[] = {
        {"printf 'a\\nb\\n'", 0, "a\nb\n", "a"},
        {"printf 'no line end'", 0, "no line end", "no line end"},
        {"echo", 0, "\n", ""},
        {"true", 0, "", ""},
        {"echo kept; exit 3", 3, "kept\n", "kept"},
        {"echo error >&2; false", 1, "", ""},
        {"no-such-command-here 2>/dev/null", 127, "", ""},
        {"kill -9 $$", -1, "", ""},
        {"echo one | cat; echo two", 0, "one\ntwo\n", "one"},
        {"echo out; exec >&-; sleep 0.3; exit 4", 4, "out\n", "out"},
        {"echo $LC_ALL", 0, "C\n", "C"},
    };
    for (const auto& one : kCases)
    {
        EXPECT_EQ(All(one.command), Printed(one.status, one.all)) << one.command;
        EXPECT_EQ(Line(one.command), Printed(one.status, one.line)) << one.command;
    }
}

TEST(Shell, KeepsWhatFitsAndReadsTheRest)
{
    EXPECT_EQ(All("printf 12345", 4).second, "123");
    EXPECT_EQ(All("printf 12345", 1).second, "");
    EXPECT_EQ(Line("printf '12\\n345'", 5).second, "12");
    const Printed much = All("i=0; while [ $i -lt 40000 ]; do echo 0123456789; i=$((i+1)); done; exit 5");
    EXPECT_EQ(much.first, 5) << "a command with more output than a pipe holds still comes to its end";
    EXPECT_EQ(much.second.size(), 4095u);
}

TEST(Shell, WaitsForNothingThatACommandLeavesRunningAndEndsOneThatIsStuck)
{
    const auto start = std::chrono::steady_clock::now();
    const Printed leaves = All("sleep 5 2>/dev/null & echo started");
    const auto left = std::chrono::steady_clock::now();
    EXPECT_EQ(leaves, Printed(0, "started\n"));
    EXPECT_LT(left - start, 4s);
    const Printed stuck = All("echo out; exec >&-; sleep 60 2>/dev/null & wait");
    EXPECT_EQ(stuck, Printed(-1, ""));
    EXPECT_GT(std::chrono::steady_clock::now() - left, 9s);
    EXPECT_LT(std::chrono::steady_clock::now() - left, 19s);
}

TEST(Shell, WorksWithChildSignalsIgnoredAndBlocked)
{
    for (const auto action : {SIG_IGN, SIG_DFL})
    {
        const auto before = signal(SIGCHLD, action);
        EXPECT_EQ(All("echo out").second, "out\n");
        signal(SIGCHLD, before);
    }
    sigset_t all;
    sigset_t before_mask;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_mask);
    const Printed printed = All("sh -c 'kill -TERM $$; echo survived'");
    sigprocmask(SIG_SETMASK, &before_mask, nullptr);
    EXPECT_EQ(printed.second, "") << "a child does not inherit what the daemon's threads block";
}

TEST(Shell, LeaksNoDescriptors)
{
    const auto first_free = []
    {
        const int file = dup(STDERR_FILENO);
        close(file);
        return file;
    };
    const std::string of_child = All("ls /proc/self/fd | wc -l").second;
    const int before = first_free();
    for (int i = 0; i < 20; ++i) All("echo x");
    EXPECT_EQ(first_free(), before);
    EXPECT_EQ(All("ls /proc/self/fd | wc -l").second, of_child);
}

// The limit binds no privileged process, so that a child gives its privileges up first.
TEST(Shell, SaysWhenNoProcessCanBeStarted)
{
    constexpr int kNoLimit = 98;
    const auto run_without_processes = []
    {
        const rlimit none = {0, 0};
        if (setrlimit(RLIMIT_NPROC, &none) != 0) return kNoLimit;
        if (const pid_t other = fork(); other >= 0) _exit(other == 0 ? 0 : kNoLimit);
        return All("echo x") == Printed(-1, "") && Line("echo x") == Printed(-1, "") ? 0 : 1;
    };
    const int result = InChild(kNobody, run_without_processes);
    if (result == kNotThatUser || result == kNoLimit) GTEST_SKIP() << "processes cannot be limited here";
    EXPECT_EQ(result, 0) << "-1 and the empty text";
}
}  // namespace
}  // namespace kobd::test
