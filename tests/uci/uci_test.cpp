// The uci program as the shell runs it: what it prints, what it keeps and what it refuses.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

#include "platform/shell.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
constexpr char kState[] = "/tmp/uci-state";
constexpr char kCommitted[] = "/tmp/uci-state/uci/net";
constexpr char kStaged[] = "/tmp/uci-state/uci/net.staged";

class Uci : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        std::filesystem::remove_all(kState);
        setenv("KOBD_STATE_DIR", kState, 1);
        PutUciOnPath();
    }

    // What the command prints, errors included, and " (STATUS)" behind it when it failed.
    static std::string Run(const std::string& command)
    {
        char output[4096];
        const int status = shell_cmd_return_file_all((command + " 2>&1").c_str(), output, sizeof output);
        return status == 0 ? output : output + (" (" + std::to_string(status) + ")");
    }
};
}  // namespace

TEST_F(Uci, StoresAndPrintsEntries)
{
    const struct
    {
        const char* command;
        const char* printed;
    } kSteps[] = {
        {"uci -X show net", "uci: net: no such configuration\n (1)"},
        {"uci set net.lan=interface", ""},
        {"uci -X show net", "net.lan=interface\n"},
        {"uci set net.lan.ip=10.0.0.1", ""},
        {"uci set net.lan.X_A_Status.Cell_ID=7", ""},
        {"uci set net.wan.mtu='1500'", ""},
        {"uci set net.lan.mask=255.0.0.0", ""},
        {"uci -X show net",
         "net.lan=interface\nnet.lan.ip='10.0.0.1'\nnet.lan.X_A_Status.Cell_ID='7'\nnet.lan.mask='255.0.0.0'\n"
         "net.wan=net\nnet.wan.mtu='1500'\n"},
        {"uci -q get net.lan.X_A_Status.Cell_ID", "7\n"},
        {"uci get net.lan", "interface\n"},
        {"uci get net.lan.ip.x", "uci: net.lan.ip.x: no such entry\n (1)"},
        {"uci -q get net.lan.missing", " (1)"},
        {"uci -q get other.lan.ip", " (1)"},
        {"uci set net.lan.ip=10.0.0.2", ""},
        {"uci get net.lan.ip", "10.0.0.2\n"},
        {"uci set net.lan.ip=''", ""},
        {"uci -q get net.lan.ip", " (1)"},
        {"uci delete net.lan.mask", ""},
        {"uci delete net.lan.mask", "uci: net.lan.mask: no such entry\n (1)"},
        {"uci set net.lan2.ip=1", ""},
        {"uci delete net.lan", ""},
        {"uci -X show net", "net.wan=net\nnet.wan.mtu='1500'\nnet.lan2=net\nnet.lan2.ip='1'\n"},
        {"uci commit other", "uci: cannot commit other: No such file or directory\n (1)"},
        {"uci commit net", ""},
        {"uci commit net", ""},
        {"uci get net.wan.mtu", "1500\n"},
    };
    for (const auto& step : kSteps) EXPECT_EQ(Run(step.command), step.printed) << step.command;
}

TEST_F(Uci, RefusesWhatIsNoNameOrCommand)
{
    for (const char* command : {"uci",
                                "uci show",
                                "uci show net.lan",
                                "uci get net",
                                "uci get net..ip",
                                "uci get net.lan.",
                                "uci get .lan.ip",
                                "uci get ../net.lan.ip",
                                "uci set net.lan.ip",
                                "uci set net=x",
                                "uci set 'net.a b.c=1'",
                                "uci set net.lan=",
                                "uci set 'net.lan=two words'",
                                "uci set 'net.lan.a\nb=1'",
                                "uci add net",
                                "uci add net 'a b'",
                                "uci add net.lan x",
                                "uci delete net",
                                "uci commit net.lan",
                                "uci commit a b",
                                "uci nothing",
                                "uci -z get a.b.c"})
    {
        const std::string printed = Run(command);
        EXPECT_TRUE(printed.ends_with("\n (1)") && printed.size() > 10) << command << ": " << printed;
    }
    EXPECT_FALSE(std::filesystem::exists(kStaged));
}

TEST_F(Uci, AddPrintsTheNameOfTheNewSectionAlone)
{
    std::string all;
    for (int i = 0; i < 20; ++i)
    {
        const std::string name = Run("uci add net interface");
        EXPECT_TRUE(std::regex_match(name, std::regex("cfg[0-9a-f]{6}\n"))) << name;
        EXPECT_EQ(all.find(name), std::string::npos);
        all += name;
    }
}

TEST_F(Uci, KeepsAnyTextUnchanged)
{
    const std::string text = "'; touch /tmp/x; '$(id)\n\"\\ `id` \r\ttab = # end\n\nend\n";
    std::string quoted;
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    ASSERT_EQ(Run("uci set net.lan.text='" + quoted + "'"), "");
    EXPECT_EQ(Run("uci get net.lan.text"), text + "\n");
    EXPECT_EQ(Run("uci -X show net"), "net.lan=net\nnet.lan.text='" + quoted + "'\n");
    EXPECT_FALSE(std::filesystem::exists("/tmp/x"));
}

TEST_F(Uci, WhatIsSetIsStagedUntilItIsCommitted)
{
    ASSERT_EQ(Run("uci set net.lan.ip=1 && uci commit net && uci set net.lan.ip=2 && uci set ppp.x.y=1"), "");
    EXPECT_EQ(Run("uci get net.lan.ip"), "2\n") << "later calls see what is staged";
    EXPECT_NE(FileText(kCommitted).find("lan.ip=1\n"), std::string::npos);
    EXPECT_NE(FileText(kStaged).find("lan.ip=2\n"), std::string::npos);
    ASSERT_EQ(Run("uci commit"), "");
    EXPECT_NE(FileText(kCommitted).find("lan.ip=2\n"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(kStaged));
    EXPECT_TRUE(std::filesystem::exists("/tmp/uci-state/uci/ppp"));
}

TEST_F(Uci, ADamagedFileIsKeptAsideAndTheOlderOneServes)
{
    ASSERT_EQ(Run("uci set net.lan.ip=1 && uci commit net"), "");
    std::ofstream(kStaged) << "lan=net\nlan.ip=2\n";  // cut: its last line is missing
    const std::string printed = Run("uci get net.lan.ip");
    EXPECT_NE(printed.find("is damaged, kept as"), std::string::npos) << printed;
    EXPECT_TRUE(printed.ends_with("\n1\n")) << printed;
    EXPECT_EQ(Run("ls /tmp/uci-state/uci/net.staged.damaged-* | wc -l"), "1\n");
    EXPECT_EQ(Run("uci get net.lan.ip"), "1\n");
}

TEST_F(Uci, FailsWhereItCannotWriteAndKeepsWhatItHas)
{
    ASSERT_EQ(Run("uci set net.lan.ip=1 && uci commit net"), "");
    ASSERT_EQ(Run("mkdir /tmp/uci-state/uci/net.staged.new"), "");
    EXPECT_TRUE(Run("uci set net.lan.ip=2").ends_with("Is a directory\n (1)"));
    EXPECT_TRUE(Run("uci add net x").ends_with("Is a directory\n (1)")) << "and no name is printed";
    EXPECT_EQ(Run("uci get net.lan.ip"), "1\n");
    EXPECT_EQ(Run("{ uci get net.lan.ip >/dev/full; }"), "uci: get: cannot write the output\n (1)");
}

TEST_F(Uci, CallersAtTheSameTimeLoseNothing)
{
    const std::string set = "for i in 0 1 2 3 4 5 6 7 8 9; do uci set net.s$n.o$i=$n$i; done";
    EXPECT_EQ(Run("for n in 1 2 3 4; do ( " + set + " ) & done; wait"), "");
    EXPECT_EQ(Run("uci -X show net | grep -c ="), "44\n") << "four sections with ten options";
}

TEST_F(Uci, ACallerThatIsKilledLeavesAWholeFile)
{
    ASSERT_EQ(Run("uci set net.lan.a=1; uci set net.lan.b=1"), "");
    for (int round = 0; round < 30; ++round)
    {
        const pid_t writer = fork();
        if (writer == 0)
        {
            setpgid(0, 0);
            execlp("sh", "sh", "-c", "while :; do uci set net.lan.a=2; uci set net.lan.a=1; done", nullptr);
            _exit(127);
        }
        setpgid(writer, writer);
        usleep(static_cast<useconds_t>(2000 + 700 * round));
        kill(-writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        EXPECT_TRUE(std::regex_match(Run("uci get net.lan.a"), std::regex("[12]\n")));
        EXPECT_EQ(Run("uci get net.lan.b"), "1\n");
    }
    EXPECT_EQ(Run("ls /tmp/uci-state/uci | grep -c damaged"), "0\n (1)");
}
}  // namespace kobd::test
