// kobctl on a terminal and in pipes: help, colours, control characters, readers that go away; and
// kobctl doctor.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "daemon/base/messages.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class KobctlTerminal : public DaemonTest
{
protected:
    // What a person sees on a terminal.
    static std::string OnTerminal(const std::vector<std::string>& words)
    {
        const int screen = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (screen < 0 || grantpt(screen) != 0 || unlockpt(screen) != 0) return "no terminal here";
        const int terminal = open(ptsname(screen), O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (terminal < 0) return "no terminal here";
        const pid_t process = StartKobctlOn(terminal, words);
        close(terminal);
        std::string text;
        char part[4096];
        for (ssize_t count = 0; (count = read(screen, part, sizeof part)) > 0;)
            text.append(part, static_cast<size_t>(count));
        waitpid(process, nullptr, 0);
        close(screen);
        return text;
    }
};

TEST_F(KobctlTerminal, EveryHelpFitsAScreen)
{
    std::vector<std::string> commands = {""};
    for (const char* one :
         {"get",   "set",   "check", "confirm", "commit", "table",  "list",   "describe", "show", "export", "import",
          "batch", "watch", "event", "journal", "nvram",  "config", "doctor", "history",  "undo", "reset",  "wait"})
        commands.emplace_back(one);
    const std::string overview = RunLine("help").output;
    for (const std::string& command : commands)
    {
        const Ran ran = RunLine("help " + command);
        EXPECT_EQ(ran.status, 0) << command;
        EXPECT_NE(overview.find(command), std::string::npos) << command << " is not in the overview";
        std::istringstream lines(ran.output);
        int count = 0;
        for (std::string line; std::getline(lines, line); ++count)
            EXPECT_LE(line.size(), 80u) << command << ": " << line;
        EXPECT_LE(count, 24) << command;
        if (command.empty()) continue;
        EXPECT_NE(ran.output.find("\n  kobctl " + command), std::string::npos) << command << " has no example";
        EXPECT_EQ(RunLine(command + " --help").output, ran.output);
    }
    EXPECT_EQ(RunLine("table dump --help").output, RunLine("help table dump").output);
    EXPECT_EQ(RunLine("help wach").errors, "kobctl: there is no command wach, did you mean watch?; see kobctl help\n");
    EXPECT_EQ(RunLine("sett a=b").errors, "kobctl: unknown command 'sett', did you mean set?; see kobctl help\n");
    EXPECT_EQ(RunLine("get --count=3 IMEI").errors, "kobctl: get takes no --count; see kobctl help get\n");
    EXPECT_EQ(RunLine("--jsn list").errors, "kobctl: unknown option --jsn, did you mean --json?; see kobctl help\n");
    EXPECT_EQ(RunLine("list --json=yes").errors, "kobctl: --json takes no value; see kobctl help\n");
    EXPECT_EQ(RunLine("--timeout=2 get webHttpPort").output, "80\n");
}

TEST_F(KobctlTerminal, AReaderThatGoesAwayEndsItQuietly)
{
    std::ofstream("/tmp/state/journal") << std::string(100000, 'a') << "\n";
    for (const char* line :
         {"list", "describe webHttpPort", "show", "get webHttpPort IMEI", "table list", "table dump ledsTable",
          "export", "journal", "journal --follow", "watch", "doctor", "help", "check webHttpPort=1",
          "nvram get suppband", "table describe FwUrlFilterTable", "list --json", "batch /tmp/state/batch"})
    {
        std::ofstream("/tmp/state/batch") << "list\nshow\n";
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        close(ends[0]);
        std::vector<std::string> words;
        std::istringstream parts(line);
        for (std::string word; parts >> word;) words.push_back(word);
        const pid_t process = StartKobctlOn(ends[1], words);
        close(ends[1]);
        const Ran ran = ReadKobctl(process);
        EXPECT_TRUE(ran.status == -SIGPIPE || ran.status == 0) << line << " ends with " << ran.status;
        EXPECT_EQ(ran.errors, "") << line;
    }
}

TEST_F(KobctlTerminal, AFullDiskIsTold)
{
    for (const char* command : {"list", "journal", "get webHttpPort", "help", "--version"})
    {
        const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
        std::vector<std::string> words;
        std::istringstream parts(command);
        for (std::string word; parts >> word;) words.push_back(word);
        const pid_t process = StartKobctlOn(full, words);
        close(full);
        const Ran ran = ReadKobctl(process);
        EXPECT_EQ(ran.status, 1) << command;
        EXPECT_EQ(ran.errors, "kobctl: the output was not written whole: No space left on device\n") << command;
    }
}

TEST_F(KobctlTerminal, NothingFromTheNetworkSteersATerminal)
{
    ASSERT_EQ(RunKobctl({"nvram", "set", "mine=a\x1b[2Jb"}).status, 0);
    EXPECT_EQ(OnTerminal({"nvram", "get", "mine"}), "a\\x1b[2Jb\r\n");
    EXPECT_EQ(RunLine("nvram get mine").output, "a\x1b[2Jb\n") << "a program gets it as it is";
    ASSERT_EQ(RunKobctl({"set", "webLoginName=x\x07y"}).status, RunLine("check webLoginName=x").status);
    ASSERT_EQ(RunKobctl({"nvram", "set", "suppband=1\x1b]0;t\x07"}).status, 0);
    EXPECT_EQ(OnTerminal({"get", "lteSuppband"}), "1\\x1b]0;t\\x07\r\n");
}

TEST_F(KobctlTerminal, ColoursAreForTerminalsThatWantThem)
{
    setenv("TERM", "xterm", 1);
    unsetenv("NO_COLOR");
    EXPECT_EQ(OnTerminal({"check", "webHttpPort=0"}).substr(0, 16), "\x1b[31mrefused\x1b[0m");
    EXPECT_EQ(RunLine("check webHttpPort=0").output.substr(0, 9), "refused  ");
    setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(OnTerminal({"check", "webHttpPort=0"}).substr(0, 9), "refused  ");
    unsetenv("NO_COLOR");
    setenv("TERM", "dumb", 1);
    EXPECT_EQ(OnTerminal({"check", "webHttpPort=0"}).substr(0, 9), "refused  ");
}

TEST_F(KobctlTerminal, TheDoctorSaysWhatIsWrong)
{
    const Ran well = RunLine("doctor");
    EXPECT_EQ(well.status, 0) << well.output;
    EXPECT_EQ(well.output.find("WRONG"), std::string::npos) << well.output;
    EXPECT_NE(well.output.find("ok    daemon   answers in "), std::string::npos) << well.output;
    EXPECT_NE(well.output.find("ok    state    /tmp/state\n"), std::string::npos) << well.output;

    RunLine("set webHttpPort=0");
    std::ofstream("/tmp/kobddebug") << "";
    BusClient module;
    ASSERT_EQ(BusClientJoin(&module, kModuleNotify), 0);
    for (int i = 0; i < 10; ++i) RunLine("set webHttpEnable=1");
    const Ran stuck = RunLine("doctor");
    EXPECT_EQ(stuck.status, 1);
    EXPECT_NE(stuck.output.find("WRONG queue    0x5A510003 (announcements): 20 messages waiting"), std::string::npos)
        << stuck.output;
    EXPECT_NE(stuck.output.find(" webHttpPort(0) verify error\n"), std::string::npos) << stuck.output;
    EXPECT_NE(stuck.output.find("debug lines are on"), std::string::npos) << stuck.output;
    BusClientClose(&module);

    kill(daemon_.Process(), SIGSTOP);
    usleep(200000);  // every thread has to notice
    const Ran silent = RunLine("doctor --timeout 0.2");
    kill(daemon_.Process(), SIGCONT);
    EXPECT_EQ(silent.status, 1);
    EXPECT_NE(silent.output.find("WRONG daemon   does not answer"), std::string::npos) << silent.output;

    daemon_.End(SIGTERM);
    ASSERT_EQ(system("rm -rf /tmp/state"), 0);
    EXPECT_NE(RunLine("doctor").output.find("WRONG state    /tmp/state: No such file"), std::string::npos);
    EXPECT_NE(access("/tmp/state", F_OK), 0) << "who looks makes nothing";
    const Ran gone = RunLine("doctor --json");
    EXPECT_EQ(gone.status, 1);
    EXPECT_TRUE(
        gone.output.starts_with("[{\"finding\":\"WRONG\",\"subject\":\"daemon\",\"text\":\"kobd is not running"))
        << gone.output;
}

TEST_F(KobctlTerminal, TheDoctorSaysWhatASmallKernelHidesAndAStockUciLoses)
{
    ASSERT_EQ(system("mount -t tmpfs none /proc/sysvipc && mkdir /tmp/kob-stock && cd /tmp/kob-stock &&"
                     " printf '#!/bin/sh\necho \"Usage: uci [<options>]\" >&2\n' >uci && chmod 755 uci"),
              0);
    const std::string path = getenv("PATH");
    setenv("PATH", ("/tmp/kob-stock:" + path).c_str(), 1);
    const std::string told = RunLine("doctor").output;
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(system("umount /proc/sysvipc"), 0);
    EXPECT_NE(told.find(", an unknown number in use\n"), std::string::npos) << told;
    EXPECT_NE(told.find("note  uci      keeps no value of a section that tr069_cellular lacks, and never X_"),
              std::string::npos)
        << told;
}
}  // namespace
}  // namespace kobd::test
