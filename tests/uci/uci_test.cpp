// The uci program as the shell runs it: what it prints, what it keeps and what it refuses.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>

#include "platform/shell.h"
#include "tests/namespaces.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
class Uci : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        std::filesystem::remove_all("/tmp/uci-state");
        std::filesystem::create_directory("/tmp/uci-state");
        setenv("KOBD_STATE_DIR", "/tmp/uci-state", 1);
        PutUciOnPath();
    }

    // What the command prints in the state folder, errors included, and " (STATUS)" behind it when it failed.
    static std::string Run(const std::string& command)
    {
        char output[4096];
        const std::string line = "cd /tmp/uci-state; " + command + " 2>&1";
        const int status = shell_cmd_return_file_all(line.c_str(), output, sizeof output);
        return status == 0 ? output : output + (" (" + std::to_string(status) + ")");
    }
};

TEST_F(Uci, KeepsAndPrintsWhatItIsGiven)
{
    const std::string text = "'; touch x; '$(id)\n\"\\ `id` \r\ttab = # end\n\nend\n";
    std::string quoted;
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    const std::pair<std::string, std::string> kSession[] = {
        {"uci -X show net", "uci: net: no such configuration\n (1)"},
        {"uci set net.lan=interface", ""},
        {"uci -X show net", "net.lan=interface\n"},
        {"uci set net.lan.ip=10.0.0.1; uci set net.lan.X_A_Status.Cell_ID=7; uci set net.wan.mtu='1500'", ""},
        {"uci -X show net",
         "net.lan=interface\nnet.lan.ip='10.0.0.1'\nnet.lan.X_A_Status.Cell_ID='7'\nnet.wan=net\nnet.wan.mtu='1500'\n"},
        {"uci -q get net.lan.X_A_Status.Cell_ID", "7\n"},
        {"uci get net.lan", "interface\n"},
        {"uci get net.lan.ip.x", "uci: net.lan.ip.x: no such entry\n (1)"},
        {"uci -q get net.lan.missing", " (1)"},
        {"uci -q get other.lan.ip", " (1)"},
        {"uci set net.lan.ip=10.0.0.2; uci get net.lan.ip", "10.0.0.2\n"},
        {"uci set net.lan.ip=''; uci -q get net.lan.ip", " (1)"},
        {"uci delete net.wan.mtu; uci delete net.wan.mtu", "uci: net.wan.mtu: no such entry\n (1)"},
        {"uci set net.lan2.ip=1; uci delete net.lan", ""},
        {"uci -X show net", "net.wan=net\nnet.lan2=net\nnet.lan2.ip='1'\n"},
        // The new sections' names alone, each another one.
        {"for i in $(seq 20); do uci add new x; done | sort -u | grep -cE '^cfg[0-9a-f]{6}$'", "20\n"},
        // Any text is kept, and no part of it is run.
        {"uci set text.a.b='" + quoted + "'", ""},
        {"uci get text.a.b", text + "\n"},
        {"uci -X show text; test -e x", "text.a=text\ntext.a.b='" + quoted + "'\n (1)"},
        // What is set is staged until it is committed.
        {"uci commit none", "uci: cannot commit none: No such file or directory\n (1)"},
        {"uci commit net && uci commit net && uci set net.lan2.ip=2", ""},
        {"uci get net.lan2.ip", "2\n"},
        {"grep ip uci/net uci/net.staged", "uci/net:lan2.ip=1\nuci/net.staged:lan2.ip=2\n"},
        {"uci commit; grep ip uci/net; ls uci", "lan2.ip=2\nnet\nnew\ntext\n"},
        // A file that was cut is kept aside, and the older one serves.
        {"printf 'lan2=net\\nlan2.ip=3\\n' >uci/net.staged", ""},
        {"uci get net.lan2.ip 2>&1 | sed 's/-[0-9]*$/-TIME/; s|/tmp/uci-state/uci/||g'",
         "uci: net.staged is damaged, kept as net.staged.damaged-TIME\n2\n"},
        {"uci get net.lan2.ip; ls uci | grep -c damaged", "2\n1\n"},
        // What cannot be written changes nothing.
        {"mkdir uci/net.staged.new", ""},
        {"uci set net.lan2.ip=4", "uci: cannot write /tmp/uci-state/uci/net.staged: Is a directory\n (1)"},
        {"uci add net x 2>/dev/null | wc -l", "0\n"},
        {"uci get net.lan2.ip", "2\n"},
        {"{ uci get net.lan2.ip >/dev/full; }", "uci: get: cannot write the output\n (1)"},
        // Callers at the same time lose nothing.
        {"for n in 1 2 3 4; do (for i in $(seq 10); do uci set all.s$n.o$i=$n$i; done) & done; wait", ""},
        {"uci -X show all | grep -c =", "44\n"},
    };
    for (const auto& [command, printed] : kSession) EXPECT_EQ(Run(command), printed) << command;
}

TEST_F(Uci, RefusesWhatIsNoNameOrCommand)
{
    std::istringstream commands(
        "uci;uci show;uci show net.lan;uci get net;uci get net..ip;uci get net.lan.;uci get .lan.ip;"
        "uci get ../net.lan.ip;uci set net.lan.ip;uci set net=x;uci set 'net.a b.c=1';uci set net.lan=;"
        "uci set 'net.lan=two words';uci set 'net.lan.a\nb=1';uci add net;uci add net 'a b';uci add net.lan x;"
        "uci delete net;uci commit net.lan;uci commit a b;uci nothing;uci -z get a.b.c");
    for (std::string command; std::getline(commands, command, ';');)
    {
        const std::string printed = Run(command);
        EXPECT_TRUE(printed.ends_with("\n (1)") && printed.size() > 10) << command << ": " << printed;
    }
    EXPECT_EQ(Run("ls uci"), "") << "nothing was stored";
}

TEST_F(Uci, ACallerThatIsKilledLeavesAWholeFile)
{
    ASSERT_EQ(Run("uci set net.lan.a=1; uci set net.lan.b=1"), "");
    for (int round = 0; round < 30; ++round)
    {
        const std::string seconds = std::to_string(0.002 + 0.0007 * round);
        Run("timeout -s KILL " + seconds + " sh -c 'while :; do uci set net.lan.a=2; uci set net.lan.a=1; done'");
        EXPECT_EQ(Run("uci get net.lan.a | tr 2 1; uci get net.lan.b"), "1\n1\n");
    }
    EXPECT_EQ(Run("ls uci | grep -c damaged"), "0\n (1)");
}
}  // namespace
}  // namespace kobd::test
