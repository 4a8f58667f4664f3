// The real daemon when its files fail it at one system call: state, dump files, change files and
// the log. What was durable stays whole, the log says what failed, and later commits catch up.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include "tests/items.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/injected_fault.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
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
    EXPECT_EQ(SetObject("webHttpPort", port, kReqObjSetSilent), 0);
    EXPECT_EQ(Request(kReqTableAdd, {{kTagTableName, kRows}}).result, 0) << "a commit's result decides no answer";
}

// "PORT/ROWS", as ChangeBoth leaves them.
std::string Both() { return GetObject("webHttpPort") + "/" + GetObject("IpFilterNumberOfEntries"); }

size_t Damaged(const std::string& folder) { return FilesLike(folder + "/kobd.db.damaged-"); }

class FileFaults : public SystemTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_FAULTS();
        StartAfresh();
    }

    // A daemon on fresh state whose first change is durable.
    void StartAfresh()
    {
        Clear();
        fault_.emplace();
        ASSERT_TRUE(daemon_.Start());
        ChangeBoth("8081");
        ASSERT_EQ(Both(), "8081/1");
    }

    // Started so that its state cannot be read; sound again.
    void RestartStruck(const FileFault& c)
    {
        fault_->Arm(c.call, c.path, c.error);
        Restart();
        fault_->Disarm();
    }

    std::optional<InjectedFault> fault_;
};

TEST_F(FileFaults, ACommitThatFailsIsToldLeavesWholeStateAndIsCaughtUpWith)
{
    const FileFault kCommitFaults[] = {
        {Call::kWrite, "*-wal", ENOSPC, 0, "the first pages of the commit"},
        {Call::kWrite, "*-wal", EDQUOT, 1, "its later pages"},
        {Call::kWrite, "*-wal", EIO, 1, "the same, by the disk"},
        {Call::kFsync, "*-wal", EIO, 0, "what was written is not on the disk"},
    };
    for (const FileFault& c : kCommitFaults)
    {
        SCOPED_TRACE(c.why);
        StartAfresh();
        fault_->Arm(c.call, c.path, c.error, INT_MAX, c.skip);
        ChangeBoth("8082");
        EXPECT_GT(fault_->Struck(), 0);
        const std::string why = strerror(c.error);
        EXPECT_TRUE(LogSays("cannot write the state in /tmp/state: " + why));
        EXPECT_EQ(Both(), "8082/2") << "it serves from memory";
        EXPECT_EQ(Said("set webHttpsPort=8443"), "! kobctl: set, but not saved: " + why + "\n[3]\n");
        EXPECT_NE(RunLine("doctor").output.find("the last commit was not saved: " + why), std::string::npos);
        std::filesystem::copy(kState, "/tmp/crashed");  // what a crash now would leave

        EXPECT_EQ(Request(kReqUpdate, {}).result, 0) << "and fails again";
        fault_->Disarm();
        EXPECT_EQ(Said("commit"), "");
        Restart();
        EXPECT_EQ(Both(), "8082/2") << "the next commit wrote what the failed one could not";
        EXPECT_EQ(GetObject("webHttpsPort"), "8443");

        daemon_.End(SIGKILL);
        DaemonProcess crashed("/tmp/crashed");
        ASSERT_TRUE(crashed.Start());
        const std::string found = Both();
        EXPECT_TRUE(found == "8081/1" || found == "8082/2") << "half a commit: " << found;
        EXPECT_EQ(Damaged("/tmp/crashed"), 0u);
    }
}

TEST_F(FileFaults, ShortAndInterruptedCallsLoseNothing)
{
    int port = 9000;
    for (const auto& [call, error, times] : {std::tuple{Call::kWrite, kShort, INT_MAX},
                                             {Call::kWrite, EINTR, 1},
                                             {Call::kRead, kShort, INT_MAX},
                                             {Call::kRead, EINTR, 3}})
    {
        SCOPED_TRACE(++port);
        fault_->Arm(call, "*/kobd.db*", error, times);
        EXPECT_EQ(SetObject("webHttpPort", std::to_string(port)), 0);
        Restart();
        EXPECT_GT(fault_->Struck(), 0);
        fault_->Disarm();
        EXPECT_EQ(Both(), std::to_string(port) + "/1");
        EXPECT_FALSE(LogSays("cannot write", 0));
    }
}

TEST_F(FileFaults, StateThatCannotBeReadIsThereAtTheNextStart)
{
    for (const FileFault& c : {FileFault{Call::kOpen, "*/kobd.db", EMFILE, 0, "no descriptor"},
                               {Call::kRead, "*/kobd.db*", EIO, 0, "the disk"}})
    {
        SCOPED_TRACE(c.why);
        StartAfresh();
        fault_->Arm(c.call, c.path, c.error);
        Restart();
        EXPECT_TRUE(LogSays("cannot read the database in /tmp/state (" + std::string(strerror(c.error)) +
                            "), factory values serve"));
        EXPECT_NE(Both(), "8081/1");
        EXPECT_EQ(RunLine("set webHttpsPort=8443").status, 3) << "set, but not saved";
        fault_->Disarm();
        Restart();
        EXPECT_EQ(Both(), "8081/1") << "a start that could not read it took nothing away";

        RestartStruck(c);
        EXPECT_EQ(SetObject("webHttpsPort", "8444"), 0);
        Restart();
        EXPECT_EQ(Both(), "8081/1") << "nor did a commit";
        EXPECT_EQ(GetObject("webHttpsPort"), "8444");
        EXPECT_EQ(Damaged(kState), 0u);

        RestartStruck(c);
        EXPECT_EQ(Said("set webHttpsPort=8445; kobctl set webHttpPort=9090; kobctl undo"),
                  "as before: webHttpPort=8081\n");
        EXPECT_EQ(GetObject("webHttpPort"), "8081") << "what was there, though nobody had read it";

        RestartStruck(c);
        ChangeBoth("8082");
        Restart();
        EXPECT_EQ(Both(), "8082/1") << "rows that nobody has seen were not mixed with others";
        EXPECT_TRUE(LogSays("is replaced, since it could not be read, kept as /tmp/state/kobd.db.damaged-"));
        EXPECT_EQ(Damaged(kState), 2u) << "the database and its log";
    }
}

TEST_F(FileFaults, AReadOnlyStateIsServedAndCaughtUpWithWhenItCanBeWritten)
{
    for (const char* closed : {"", "PRAGMA wal_checkpoint(TRUNCATE)"})  // killed, or ended with nothing left in the log
    {
        SCOPED_TRACE(closed);
        daemon_.End(SIGKILL);
        if (*closed != 0)
        {
            StateSql(kState, closed);
            ASSERT_EQ(system("rm -f /tmp/state/kobd.db-shm /tmp/state/kobd.db-wal"), 0);
        }
        ASSERT_EQ(system("mount --bind /tmp/state /tmp/state && mount -o remount,bind,ro /tmp/state"), 0);
        ASSERT_TRUE(daemon_.Start());
        EXPECT_EQ(Both(), "8081/1") << "what was committed is served";
        EXPECT_EQ(Said("set webHttpsPort=8443"), "! kobctl: set, but not saved: Read-only file system\n[3]\n");
        ASSERT_EQ(system("mount -o remount,bind,rw /tmp/state"), 0);
        EXPECT_EQ(Said("set webHttpsPort=8444"), "");
        Restart();
        EXPECT_EQ(Both() + GetObject("webHttpsPort"), "8081/18444");
        daemon_.End(SIGTERM);
        ASSERT_EQ(system("umount /tmp/state"), 0);
        ASSERT_TRUE(daemon_.Start());
    }
}

TEST_F(FileFaults, ADumpThatCannotBeWrittenIsRefusedToldAndRemoved)
{
    for (const uint16_t id : {kReqShow, kReqTableDump})
        for (const auto& [call, error] :
             {std::pair{Call::kWrite, EIO}, {Call::kWrite, EDQUOT}, {Call::kOpen, EMFILE}, {Call::kOpen, ENOSPC}})
        {
            SCOPED_TRACE(strerror(error));
            unlink(kLog.c_str());
            fault_->Arm(call, "/tmp/kobd-*", error);
            EXPECT_EQ(Request(id, {{kTagTableName, "IPv4RoutingTable"}}).result, 4);
            EXPECT_GT(fault_->Struck(), 0);
            EXPECT_TRUE(LogSays("cannot write /tmp/kobd-") && LogSays(std::string(": ") + strerror(error)));
            EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << "no part of a dump stays";
        }
}

TEST_F(FileFaults, AChangeFileThatIsNotReadWholeChangesNothing)
{
    std::ofstream("/tmp/change", std::ios::binary) << Row(kRows, 1) + Column("DestIPAddress", "192.0.2.7");
    const std::string kKept = "SELECT * FROM cells";
    const std::string before = StateSql(kState, kKept);
    for (const auto& [call, error] :
         {std::pair{Call::kRead, kShort}, {Call::kRead, EINTR}, {Call::kRead, EIO}, {Call::kOpen, EMFILE}})
    {
        SCOPED_TRACE(strerror(error));
        unlink(kLog.c_str());
        fault_->Arm(call, "/tmp/change", error);
        EXPECT_EQ(Request(kReqTableSet, {{kTagValue, "/tmp/change"}}).result, 4);
        EXPECT_EQ(fault_->Struck(), 1);
        fault_->Disarm();
        EXPECT_TRUE(LogSays("cannot read the change file /tmp/change"));
        EXPECT_EQ(Request(kReqUpdate, {}).result, 0);
        EXPECT_EQ(StateSql(kState, kKept), before);
    }
    EXPECT_EQ(Request(kReqTableSet, {{kTagValue, "/tmp/change"}}).result, 0);
    EXPECT_NE(StateSql(kState, kKept), before);
}

TEST_F(FileFaults, ALogThatFailsCostsItsLinesAlone)
{
    // A refusal is told in the log; in how many lines.
    const auto refuse = []
    {
        unlink(kLog.c_str());
        EXPECT_EQ(SetObject("webHttpPort", "99999"), 2);
        const std::string log = FileText(kLog);
        return std::count(log.begin(), log.end(), '\n');
    };
    const auto lines = refuse();
    for (const auto& [call, error, lost] : {std::tuple{Call::kWrite, EIO, true},
                                            {Call::kWrite, ENOSPC, true},
                                            {Call::kOpen, EMFILE, true},
                                            {Call::kWrite, kShort, false},
                                            {Call::kWrite, EINTR, false}})
    {
        SCOPED_TRACE(error);
        fault_->Arm(call, kLog, error, error == EINTR ? 1 : INT_MAX);
        EXPECT_EQ(refuse(), lost ? 0 : lines);
        EXPECT_GT(fault_->Struck(), 0);
        fault_->Disarm();
        EXPECT_EQ(refuse(), lines) << "the next ones are there again";
    }
}
}  // namespace
}  // namespace kobd::test
