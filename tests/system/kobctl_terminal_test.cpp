// kobctl on a terminal, and in front of a reader that goes away.
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>

#include <fstream>

#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class KobctlTerminal : public DaemonTest
{
protected:
    // What a person sees on a terminal of that kind.
    static std::string OnTerminal(const std::string& words, const char* kind = "xterm")
    {
        int screen = -1;
        int terminal = -1;
        if (openpty(&screen, &terminal, nullptr, nullptr, nullptr) != 0) return "no terminal here";
        fcntl(screen, F_SETFD, FD_CLOEXEC);
        setenv("TERM", kind, 1);
        const pid_t process = StartKobctl(words, terminal);
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

TEST_F(KobctlTerminal, AReaderThatGoesAwayEndsItQuietly)
{
    std::ofstream("/tmp/state/journal") << std::string(100000, 'a') << "\n";
    std::ofstream("/tmp/batch") << "list\nshow\n";
    for (const char* words :
         {"list", "show", "get webHttpPort IMEI", "table dump ledsTable", "export", "journal --follow", "watch",
          "doctor", "help", "check webHttpPort=1", "list --json", "batch /tmp/batch"})
    {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        close(ends[0]);
        const pid_t process = StartKobctl(words, ends[1]);
        close(ends[1]);
        const Ran ran = ReadKobctl(process);
        EXPECT_TRUE(ran.status == -SIGPIPE || ran.status == 0) << words << " ends with " << ran.status;
        EXPECT_EQ(ran.errors, "") << words;
    }
}

TEST_F(KobctlTerminal, NothingFromTheNetworkSteersATerminal)
{
    ASSERT_EQ(Said("nvram set mine='a\x1b[2Jb' suppband='1\x1b]0;t\x07'"), "");
    EXPECT_EQ(OnTerminal("nvram get mine"), "a\\x1b[2Jb\r\n");
    EXPECT_EQ(OnTerminal("get lteSuppband"), "1\\x1b]0;t\\x07\r\n");
    EXPECT_EQ(Said("nvram get mine"), "a\x1b[2Jb\n") << "a program gets it as it is";
    ASSERT_EQ(Said("nvram set mine='\u202Ea' suppband='1\nIMEI=2'"), "");
    EXPECT_EQ(OnTerminal("nvram get mine"), "\\xe2\\x80\\xaea\r\n") << "it would turn the line";
    ASSERT_EQ(Said("nvram set mine='\xC3(b'"), "");
    EXPECT_EQ(OnTerminal("nvram get mine"), "\\xc3(b\r\n") << "no character of UTF-8";
    EXPECT_EQ(Said("get lteSuppband webHttpPort"), "lteSuppband=1\\x0aIMEI=2\nwebHttpPort=80\n")
        << "no line of its own";
}

TEST_F(KobctlTerminal, ASimulatedValueIsMarkedForAPersonAlone)
{
    ASSERT_EQ(Said("sim set RSRP=-120"), "");
    EXPECT_EQ(OnTerminal("get RSRP webHttpPort"), "RSRP=-120  (simulated)\r\nwebHttpPort=80\r\n");
    EXPECT_EQ(Said("get RSRP"), "-120\n");
}

TEST_F(KobctlTerminal, APersonIsToldThatAnAnswerTakesLong)
{
    EXPECT_EQ(OnTerminal("get webHttpPort 2>&1"), "80\r\n");
    kill(daemon_.Process(), SIGSTOP);
    const std::string seen = OnTerminal("get --timeout 3 webHttpPort 2>&1");
    EXPECT_TRUE(seen.starts_with("kobctl: still waiting for the router\r\n")) << seen;
    EXPECT_TRUE(seen.ends_with("Message wait reply timeout (8)\r\n")) << seen;
    kill(daemon_.Process(), SIGCONT);
}

TEST_F(KobctlTerminal, ColoursAreForTerminalsThatWantThem)
{
    unsetenv("NO_COLOR");
    EXPECT_TRUE(OnTerminal("check webHttpPort=0").starts_with("\x1b[31mrefused\x1b[0m"));
    EXPECT_TRUE(OnTerminal("check webHttpPort=0", "dumb").starts_with("refused  "));
    EXPECT_TRUE(Said("check webHttpPort=0").starts_with("refused  "));
    setenv("NO_COLOR", "1", 1);
    EXPECT_TRUE(OnTerminal("check webHttpPort=0").starts_with("refused  "));
    unsetenv("NO_COLOR");
}
}  // namespace
}  // namespace kobd::test
