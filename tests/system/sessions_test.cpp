// Replays each file in sessions/. Each has its own daemon, and all that is printed is compared with the file.
//
// A session is what a person sees. A line "$ COMMAND" is run by the shell, together with lines "> ..." behind it; its
// output follows, lines of standard error after "! ", and the exit status in brackets where it is not 0. "$ kill kobd"
// ends the daemon as a power cut would, "$ kobd" starts it again, KOBD_PID is its process. "$ join" joins the bus as
// the module that announcements go to, and reads none of them. Lines before the first command are a comment.
//
// After an intended change of words, run this program with KOBD_REWRITE_SESSIONS=1 and review what changed.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "daemon/base/messages.h"
#include "platform/bus_client.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

std::vector<std::string> SessionNames()
{
    std::vector<std::string> names;
    std::error_code none;  // in the booted router there are no sources
    for (const auto& file : fs::directory_iterator(KOBD_SOURCES "/tests/system/sessions", none))
        names.push_back(file.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

class KobctlSession : public SystemTest, public testing::WithParamInterface<std::string>
{
protected:
    void SetUp() override
    {
        SystemTest::SetUp();
        if (IsSkipped()) return;
        PutOnPath("built-uci", ExecUci());
        PutOnPath("kobd", Exec("kobd"));
        if (!Emulator().empty()) PutUciOnPath();  // elsewhere the daemon finds our uci by itself
        ASSERT_TRUE(daemon_.Start());
    }
    void TearDown() override { BusClientClose(&listener_); }

    std::string Run(const std::string& command)
    {
        if (command == "join") return BusClientJoin(&listener_, kModuleNotify) == 0 ? "" : "it cannot join\n";
        if (command == "kobd") return daemon_.Start() ? "" : "it does not answer\n";
        setenv("KOBD_PID", std::to_string(daemon_.Process()).c_str(), 1);
        if (command != "kill kobd") return RunShell(command).Text();
        daemon_.End(SIGKILL);
        return "";
    }

    std::string Replay(const std::string& session)
    {
        std::string replayed;
        std::string comment;
        std::istringstream lines(session);
        for (std::string line; std::getline(lines, line);)
        {
            if (replayed.empty() && !line.starts_with("$ ")) comment += line + "\n";
            if (!line.starts_with("$ ")) continue;
            std::string command = line.substr(2);
            replayed += line + "\n";
            while (lines.peek() == '>' && std::getline(lines, line))
            {
                replayed += line + "\n";
                command += "\n" + line.substr(std::min<size_t>(2, line.size()));
            }
            replayed += Run(command);
        }
        return comment + replayed;
    }

private:
    BusClient listener_;
};

INSTANTIATE_TEST_SUITE_P(Sessions, KobctlSession, testing::ValuesIn(SessionNames()),
                         [](const auto& one) { return one.param; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(KobctlSession);

TEST_P(KobctlSession, ReadsAsWritten)
{
    const std::string path = SourceFolder() + "tests/system/sessions/" + GetParam() + ".session";
    const std::string session = FileText(path);
    const std::string replayed = Replay(session);
    EXPECT_EQ(replayed, session);
    EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << "dump files and change files are removed";
    if (getenv("KOBD_REWRITE_SESSIONS") != nullptr) std::ofstream(path) << replayed;
}
}  // namespace
}  // namespace kobd::test
