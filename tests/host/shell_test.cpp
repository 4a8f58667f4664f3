// The shell runners: everything a command prints, and no more waiting than it deserves.
#include "platform/shell.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "tests/host/in_child.h"

namespace kobd::test
{
namespace
{
struct Printed
{
    int status = -2;
    std::string text;
};

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
    };
    for (const auto& one : kCases)
    {
        SCOPED_TRACE(one.command);
        const Printed all = All(one.command);
        EXPECT_EQ(all.status, one.status);
        EXPECT_EQ(all.text, one.all);
        const Printed line = Line(one.command);
        EXPECT_EQ(line.status, one.status);
        EXPECT_EQ(line.text, one.line);
    }
}

TEST(Shell, KeepsWhatFitsAndReadsTheRest)
{
    EXPECT_EQ(All("printf 12345", 4).text, "123");
    EXPECT_EQ(All("printf 12345", 1).text, "");
    EXPECT_EQ(Line("printf '12\\n345'", 5).text, "12");
    const Printed much = All("i=0; while [ $i -lt 40000 ]; do echo 0123456789; i=$((i+1)); done; exit 5");
    EXPECT_EQ(much.status, 5) << "a command with more output than a pipe holds still comes to its end";
    EXPECT_EQ(much.text.size(), 4095u);
}

TEST(Shell, WaitsForNothingThatACommandLeavesRunningAndEndsOneThatIsStuck)
{
    const struct
    {
        const char* command;
        int status;
        const char* text;
        double least, most;  // seconds
    } kCases[] = {
        {"sleep 5 2>/dev/null & echo started", 0, "started\n", 0, 4},
        {"echo out; exec >&-; sleep 60 2>/dev/null & wait", -1, "", 9, 19},
    };
    for (const auto& one : kCases)
    {
        const auto start = std::chrono::steady_clock::now();
        const Printed printed = All(one.command);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(printed.status, one.status);
        EXPECT_EQ(printed.text, one.text);
        EXPECT_TRUE(seconds.count() >= one.least && seconds.count() < one.most) << seconds.count();
    }
}

TEST(Shell, WorksWithChildSignalsIgnoredAndBlocked)
{
    for (const auto action : {SIG_IGN, SIG_DFL})
    {
        const auto before = signal(SIGCHLD, action);
        EXPECT_EQ(All("echo out").text, "out\n");
        signal(SIGCHLD, before);
    }
    sigset_t all;
    sigset_t before_mask;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_mask);
    const Printed printed = All("sh -c 'kill -TERM $$; echo survived'");
    sigprocmask(SIG_SETMASK, &before_mask, nullptr);
    EXPECT_EQ(printed.text, "") << "a child does not inherit what the daemon's threads block";
}

TEST(Shell, LeaksNoDescriptors)
{
    const std::string before = All("ls /proc/self/fd | wc -l").text;
    const int first_free = dup(STDERR_FILENO);
    close(first_free);
    for (int i = 0; i < 20; ++i) All("echo x");
    EXPECT_EQ(All("ls /proc/self/fd | wc -l").text, before) << "of a child";
    const int next_free = dup(STDERR_FILENO);
    close(next_free);
    EXPECT_EQ(next_free, first_free);
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
        const Printed all = All("echo x");
        const Printed line = Line("echo x");
        return all.status == -1 && all.text.empty() && line.status == -1 && line.text.empty() ? 0 : 1;
    };
    const int result = InChild(kNobody, run_without_processes);
    if (result == kNotThatUser || result == kNoLimit) GTEST_SKIP() << "processes cannot be limited here";
    EXPECT_EQ(result, 0) << "-1 and the empty text";
}
}  // namespace
}  // namespace kobd::test
