// The real daemon when its files fail it at one system call: state, dump files, change files and
// the log. What was durable stays whole, the log says what failed, and later commits catch up.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "daemon/base/tlv.h"
#include "tests/items.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_process.h"
#include "tests/system/injected_fault.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

constexpr char kState[] = "/tmp/state";
constexpr char kCrashed[] = "/tmp/crashed";  // what a crash at the fault would have left
constexpr char kLog[] = "/tmp/kobd.log";
constexpr char kRows[] = "FwIpFilterTable";

struct FileFault
{
    Call call;
    const char* path;
    int error;
    int skip;
    const char* why;
};

// Changes an object and a list and commits them together.
void ChangeBoth(const std::string& port)
{
    EXPECT_EQ(SetObject("webHttpPort", port, kSetSilent), 0);
    EXPECT_EQ(Request(kTableAdd, {{kTagTableName, kRows}}).result, 0) << "a commit's result decides no answer";
}

// "PORT/ROWS", as ChangeBoth leaves them.
std::string Both() { return GetObject("webHttpPort") + "/" + GetObject("IpFilterNumberOfEntries"); }

bool LogHas(const std::string& text) { return FileText(kLog).find(text) != std::string::npos; }

int FilesLike(const std::string& folder, const std::string& part)
{
    int count = 0;
    for (const auto& file : fs::directory_iterator(folder))
        if (file.path().filename().string().find(part) != std::string::npos) ++count;
    return count;
}

class FileFaults : public testing::Test
{
protected:
    void SetUp() override { SKIP_WITHOUT_FAULTS(); }

    // A daemon on fresh state whose first change is durable.
    void StartAfresh()
    {
        if (daemon_.Process() > 0) daemon_.End(SIGKILL);
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/crashed /tmp/kobd* && mkdir /tmp/state"), 0);
        ASSERT_TRUE(daemon_.Start());
        ChangeBoth("8081");
        ASSERT_EQ(Both(), "8081/1");
    }
    void KillAndStart()
    {
        daemon_.End(SIGKILL);
        ASSERT_TRUE(daemon_.Start());
    }

    InjectedFault fault_;
    DaemonProcess daemon_{kState};
};

const FileFault kCommitFaults[] = {
    {Call::kWrite, "*-wal", ENOSPC, 0, "the first page of the commit"},
    {Call::kWrite, "*-wal", EIO, 3, "a page in its middle"},
    {Call::kWrite, "*-wal", EDQUOT, 6, "a later page"},
    {Call::kFsync, "*-wal", EIO, 0, "what was written is not on the disk"},
    {Call::kFsync, "*-wal", EDQUOT, 0, "the same, of a quota"},
};

TEST_F(FileFaults, ACommitThatFailsIsToldLeavesWholeStateAndIsCaughtUpWith)
{
    for (const FileFault& c : kCommitFaults)
    {
        SCOPED_TRACE(c.why);
        StartAfresh();
        fault_.Arm(c.call, c.path, c.error, INT_MAX, c.skip);
        ChangeBoth("8082");
        EXPECT_GT(fault_.Struck(), 0);
        const std::string why = strerror(c.error);
        EXPECT_TRUE(LogHas("cannot write the state in /tmp/state: " + why)) << FileText(kLog);
        EXPECT_EQ(Both(), "8082/2") << "it serves from memory";
        const Ran set = RunLine("set webHttpsPort=8443");
        EXPECT_EQ(set.status, 3);
        EXPECT_EQ(set.errors, "kobctl: set, but not saved: " + why + "\n");
        EXPECT_NE(RunLine("doctor").output.find("the last commit could not be saved: " + why), std::string::npos);
        fs::copy(kState, kCrashed, fs::copy_options::recursive);

        EXPECT_EQ(Request(kUpdate, {}).result, 0) << "and fails again";
        fault_.Disarm();
        EXPECT_EQ(RunLine("commit").status, 0);
        KillAndStart();
        EXPECT_EQ(Both(), "8082/2") << "the next commit wrote what the failed one could not";
        EXPECT_EQ(GetObject("webHttpsPort"), "8443");

        daemon_.End(SIGKILL);
        DaemonProcess crashed(kCrashed);
        ASSERT_TRUE(crashed.Start());
        const std::string found = Both();
        EXPECT_TRUE(found == "8081/1" || found == "8082/2") << "half a commit: " << found;
        EXPECT_EQ(FilesLike(kCrashed, "damaged"), 0);
    }
}

TEST_F(FileFaults, ShortAndInterruptedCallsLoseNothing)
{
    StartAfresh();
    for (const auto& [call, error, times] : {std::tuple{Call::kWrite, kShort, INT_MAX},
                                             {Call::kWrite, EINTR, 1},
                                             {Call::kRead, kShort, INT_MAX},
                                             {Call::kRead, EINTR, 3}})
    {
        SCOPED_TRACE(error);
        fault_.Arm(call, "*/kobd.db*", error, times);
        EXPECT_EQ(SetObject("webHttpPort", std::to_string(9000 + static_cast<int>(call) + error)), 0);
        KillAndStart();
        EXPECT_GT(fault_.Struck(), 0);
        fault_.Disarm();
        EXPECT_EQ(Both(), std::to_string(9000 + static_cast<int>(call) + error) + "/1");
        EXPECT_FALSE(LogHas("cannot write")) << FileText(kLog);
    }
}

TEST_F(FileFaults, StateThatCannotBeReadIsThereAtTheNextStart)
{
    for (const FileFault& c : {FileFault{Call::kOpen, "*/kobd.db", EMFILE, 0, "no descriptor"},
                               {Call::kRead, "*/kobd.db*", EIO, 0, "the disk"}})
    {
        SCOPED_TRACE(c.why);
        StartAfresh();
        fault_.Arm(c.call, c.path, c.error);
        KillAndStart();
        EXPECT_TRUE(LogHas("cannot read the database in /tmp/state (" + std::string(strerror(c.error)) +
                           "), factory values serve"))
            << FileText(kLog);
        EXPECT_NE(Both(), "8081/1");
        EXPECT_EQ(RunLine("set webHttpsPort=8443").status, 3) << "set, but not saved";
        fault_.Disarm();
        KillAndStart();
        EXPECT_EQ(Both(), "8081/1") << "a start that could not read it took nothing away";

        fault_.Arm(c.call, c.path, c.error);
        KillAndStart();
        fault_.Disarm();
        EXPECT_EQ(SetObject("webHttpsPort", "8444"), 0);
        KillAndStart();
        EXPECT_EQ(Both(), "8081/1") << "nor did a commit";
        EXPECT_EQ(GetObject("webHttpsPort"), "8444");
        EXPECT_EQ(FilesLike(kState, "damaged"), 0);

        fault_.Arm(c.call, c.path, c.error);
        KillAndStart();
        fault_.Disarm();
        ChangeBoth("8082");
        KillAndStart();
        EXPECT_EQ(Both(), "8082/1") << "rows that nobody has seen were not mixed with others";
        EXPECT_TRUE(LogHas("is replaced, since it could not be read, kept as /tmp/state/kobd.db.damaged-"));
        EXPECT_EQ(FilesLike(kState, "damaged"), 2) << "the database and its log";
    }
}

TEST_F(FileFaults, AReadOnlyStateIsServedAndCaughtUpWithWhenItCanBeWritten)
{
    StartAfresh();
    daemon_.End(SIGKILL);
    ASSERT_EQ(system("mount --bind /tmp/state /tmp/state && mount -o remount,bind,ro /tmp/state"), 0);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Both(), "8081/1") << "what was committed is served";
    EXPECT_EQ(RunLine("set webHttpsPort=8443").errors, "kobctl: set, but not saved: Read-only file system\n");
    ASSERT_EQ(system("mount -o remount,bind,rw /tmp/state"), 0);
    EXPECT_EQ(RunLine("commit").status, 0);
    KillAndStart();
    EXPECT_EQ(GetObject("webHttpsPort"), "8443");
    EXPECT_EQ(Both(), "8081/1");
    daemon_.End(SIGTERM);
    EXPECT_EQ(system("umount /tmp/state"), 0);
}

TEST_F(FileFaults, ADumpIsWholeOrRefusedAndRemoved)
{
    StartAfresh();
    const auto dump = [](uint16_t id)
    {
        return Request(id, id == kShow
                               ? std::vector<std::pair<uint16_t, std::string>>{}
                               : std::vector<std::pair<uint16_t, std::string>>{{kTagTableName, "IPv4RoutingTable"}});
    };
    for (const uint16_t id : {kShow, kTableDump})
    {
        SCOPED_TRACE(id);
        const Answer whole = dump(id);
        ASSERT_EQ(whole.texts.size(), 1u);
        const std::string text = FileText(whole.texts[0]);
        ASSERT_EQ(unlink(whole.texts[0].c_str()), 0);
        for (const auto& [call, error, answer] :
             {std::tuple{Call::kWrite, kShort, 0}, std::tuple{Call::kWrite, EIO, 4},
              std::tuple{Call::kWrite, EDQUOT, 4}, std::tuple{Call::kOpen, EMFILE, 4},
              std::tuple{Call::kOpen, ENOSPC, 4}})
        {
            SCOPED_TRACE(strerror(error));
            fault_.Arm(call, "/tmp/kobd-*", error);
            const Answer got = dump(id);
            EXPECT_GT(fault_.Struck(), 0);
            fault_.Disarm();
            EXPECT_EQ(got.result, answer);
            if (answer == 0)
            {
                EXPECT_EQ(FileText(got.texts.at(0)), text);
                unlink(got.texts.at(0).c_str());
            }
            else
                EXPECT_TRUE(LogHas("cannot write /tmp/kobd-") && LogHas(std::string(": ") + strerror(error)))
                    << FileText(kLog);
            EXPECT_EQ(FilesLike("/tmp", "kobd-"), 0) << "no part of a dump stays";
            unlink(kLog);
        }
    }
}

TEST_F(FileFaults, AChangeFileThatIsNotReadWholeChangesNothing)
{
    StartAfresh();
    const std::string change = Row(kRows, 1) + Column("DestIPAddress", "192.0.2.7");
    std::ofstream("/tmp/change", std::ios::binary) << change;
    const std::string kRowsKept = "SELECT * FROM cells";
    const std::string before = StateSql(kState, kRowsKept);
    for (const auto& [call, error] : {std::pair{Call::kRead, kShort}, std::pair{Call::kRead, EINTR},
                                      std::pair{Call::kRead, EIO}, std::pair{Call::kOpen, EMFILE}})
    {
        fault_.Arm(call, "/tmp/change", error);
        EXPECT_EQ(Request(kTableSet, {{kTagValue, "/tmp/change"}}).result, 4) << strerror(error);
        EXPECT_EQ(fault_.Struck(), 1);
        fault_.Disarm();
        EXPECT_TRUE(LogHas("cannot read the change file /tmp/change")) << FileText(kLog);
        ASSERT_EQ(unlink(kLog), 0);
        EXPECT_EQ(Request(kUpdate, {}).result, 0);
        EXPECT_EQ(StateSql(kState, kRowsKept), before) << strerror(error);
    }
    EXPECT_EQ(Request(kTableSet, {{kTagValue, "/tmp/change"}}).result, 0);
    EXPECT_NE(StateSql(kState, kRowsKept), before);
}

TEST_F(FileFaults, ALogThatFailsCostsItsLinesAlone)
{
    StartAfresh();
    const auto refuse = [] { return SetObject("webHttpPort", "99999"); };  // is told in the log
    for (const auto& [call, error] :
         {std::pair{Call::kWrite, EIO}, std::pair{Call::kWrite, ENOSPC}, std::pair{Call::kOpen, EMFILE}})
    {
        fault_.Arm(call, kLog, error);
        const std::string before = FileText(kLog);
        EXPECT_EQ(refuse(), 2);
        EXPECT_GT(fault_.Struck(), 0);
        EXPECT_EQ(FileText(kLog), before);
        fault_.Disarm();
        EXPECT_EQ(refuse(), 2);
        EXPECT_NE(FileText(kLog), before) << "the next line is there again";
    }
    const std::string line = FileText(kLog).substr(FileText(kLog).rfind("]: "));
    for (const auto& [error, times] : {std::pair{kShort, INT_MAX}, std::pair{EINTR, 1}})
    {
        ASSERT_EQ(unlink(kLog), 0);
        fault_.Arm(Call::kWrite, kLog, error, times);
        EXPECT_EQ(refuse(), 2);
        EXPECT_GT(fault_.Struck(), 0);
        EXPECT_TRUE(FileText(kLog).ends_with(line)) << FileText(kLog);
    }
}
}  // namespace
}  // namespace kobd::test
