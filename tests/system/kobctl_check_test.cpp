// kobctl check, batch and watch against the real daemon.
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "daemon/base/messages.h"
#include "host/bus/bus_queues.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class KobctlCheck : public DaemonTest
{
protected:
    static std::string Batch(const std::string& text)
    {
        std::ofstream("/tmp/batch") << text;
        return Replay("$ kobctl batch /tmp/batch\n");
    }
};

TEST_F(KobctlCheck, SaysWhichItemAndWhyAndChangesNothing)
{
    const char* session =
        R"session($ kobctl check webHttpPort=70000 webHttpEnable=0 lteLockpin=1,1234 IMEI=1 webHttpport=2
refused  webHttpPort=70000: it takes an integer from 1 to 65535
ok       webHttpEnable=0
open     lteLockpin=1,1234: the daemon decides (validLockPin); it takes 0 or 1, a comma and a PIN of 4 to 8 digits, such as 1,1234
refused  IMEI=1: IMEI is read-only
refused  webHttpport=2: there is no object webHttpport, did you mean webHttpPort?
[1]
$ kobctl check webHttpPort=81 webHttpEnable=0
ok       webHttpPort=81
ok       webHttpEnable=0
$ kobctl check lteLockpin=1,1234 --json
[{"item":"lteLockpin=1,1234","verdict":"open","why":"the daemon decides (validLockPin); it takes 0 or 1, a comma and a PIN of 4 to 8 digits, such as 1,1234"}]
[3]
$ kobctl check webHttpPort
! kobctl: there is no table webHttpPort: Obj or table not found (1)
[1]
$ kobctl check webHttpPort=1 webHttpEnable
! kobctl: check takes NAME=VALUE, not 'webHttpEnable'; see kobctl help check
[2]
$ kobctl table add FwPortFilterTable
1
$ kobctl check FwPortFilterTable 1 Protocol=tcp FwPortFilterTable 2 Proto=tcp FlowTable 1
ok       FwPortFilterTable 1
ok       FwPortFilterTable 1 Protocol=tcp
refused  FwPortFilterTable 2: FwPortFilterTable has no row 2, it has 1
refused  FwPortFilterTable 2 Proto=tcp: there is no column Proto
refused  FlowTable 1: FlowTable has no set operation, it has get, next
[1]
$ kobctl get webHttpPort webHttpEnable
webHttpPort=80
webHttpEnable=1
)session";
    EXPECT_EQ(Replay(session), session);
    daemon_.End(SIGTERM);
    session = R"session($ kobctl check webHttpPort=81
ok       webHttpPort=81
$ kobctl check FwPortFilterTable 9 Protocol=tcp
open     FwPortFilterTable 9: cannot tell whether this row exists: kobd is not running on this bus: Message not running (3)
ok       FwPortFilterTable 9 Protocol=tcp
[3]
)session";
    EXPECT_EQ(Replay(session), session);
}

TEST_F(KobctlCheck, ABatchStopsAtTheFirstFailure)
{
    EXPECT_EQ(Batch("# a comment\n\n  set webHttpPort=8080  # another\nget webHttpPort\nset webHttpPort=0\nset "
                    "webHttpEnable=0\nget webHttpEnable\n"),
              "$ kobctl batch /tmp/batch\n8080\n! kobctl: webHttpPort=0: Integer value does not match limitation: 0 "
              "[1:65535] (ParameterCheck); it takes an integer from 1 to 65535: Invalid argument (2)\n"
              "! kobctl: /tmp/batch:5: this command failed; 2 commands after it did not run\n[1]\n");
    EXPECT_EQ(RunLine("get webHttpEnable").output, "1\n");
    EXPECT_EQ(Batch("set webHttpPort=81\nget\n"),
              "$ kobctl batch /tmp/batch\n! kobctl: get takes NAME...; see kobctl help get\n"
              "! kobctl: /tmp/batch:2: this command failed\n[2]\n");
    EXPECT_EQ(Replay("$ kobctl batch /tmp/none\n"),
              "$ kobctl batch /tmp/none\n! kobctl: batch: cannot open /tmp/none: No such file or directory\n[1]\n");
}

TEST_F(KobctlCheck, ABatchWithAMistakeInItsQuotingRunsNothing)
{
    EXPECT_EQ(
        Batch("set webHttpPort=81\nget 'x\nbatch f\nget \\"),
        "$ kobctl batch /tmp/batch\n! kobctl: /tmp/batch:2: the quote ' is not closed\n"
        "! kobctl: /tmp/batch:3: a batch cannot run a batch\n! kobctl: /tmp/batch:4: a backslash ends the line\n! "
        "kobctl: batch: /tmp/batch has "
        "3 mistakes; nothing was run; see kobctl help batch\n[2]\n");
    EXPECT_EQ(RunLine("get webHttpPort").output, "80\n");
}

TEST_F(KobctlCheck, WordsOfABatchHoldWhatTheyQuote)
{
    const struct
    {
        const char* written;
        const char* value;
    } kCases[] = {
        {"'two words'", "two words"},
        {"\"two words\"", "two words"},
        {"a\\ b", "a b"},
        {"'a\\b'", "a\\b"},
        {"\"a\\\"b\"", "a\"b"},
        {"a#b", "a#b"},
        {"''", ""},
        {"a'b c'd\"e f\"", "ab cde f"},
        {"'it'\\''s'", "it's"},
        {"a # not part of it", "a"},
    };
    for (const auto& c : kCases)
    {
        EXPECT_EQ(Batch(std::string("nvram set mine=") + c.written + "\n"), "$ kobctl batch /tmp/batch\n") << c.written;
        EXPECT_EQ(RunLine("nvram get mine").output, std::string(c.value) + "\n") << c.written;
    }
}

TEST_F(KobctlCheck, WatchShowsWhatIsAskedFor)
{
    const pid_t watch = StartKobctl({"watch", "--count", "3", "webHttpPort", "Fw*Table", "IPChange"});
    for (int i = 0; i < 100 && !host::ClaimHolds(host::ModuleClaim(kModuleForward)); ++i) usleep(100000);
    EXPECT_EQ(Request(kSet, {{1, "webHttpEnable"}, {2, "0"}, {1, "webHttpPort"}, {2, "81"}}).result, 0);
    EXPECT_EQ(Request(kTableAdd, {{3, "node_632Table"}}).result, 0);
    EXPECT_EQ(Request(kTableAdd, {{3, "FwUrlFilterTable"}}).result, 0);
    BusClient client;
    ASSERT_EQ(BusClientOpen(&client), 0);
    MessageHeader event{};
    event.destination = kModuleKobd;
    event.message_class = kClassEvent;
    event.id = 18;  // EvtEthernetIPAdd, passed on as EvtApnIPChange
    EXPECT_EQ(BusClientSend(&client, &event, 1000), 0);
    BusClientClose(&client);
    const Ran ran = ReadKobctl(watch);
    EXPECT_EQ(ran.status, 0) << ran.errors;
    EXPECT_NE(ran.output.find("object changed (id 2) object=webHttpPort\n"), std::string::npos) << ran.output;
    EXPECT_NE(ran.output.find("row added (id 799) table=FwUrlFilterTable index=1\n"), std::string::npos) << ran.output;
    EXPECT_NE(ran.output.find("EvtApnIPChange (id 771)"), std::string::npos) << ran.output;
    EXPECT_EQ(ran.output.find("webHttpEnable"), std::string::npos) << ran.output;
    EXPECT_EQ(Replay("$ kobctl watch webHtpPort\n"),
              "$ kobctl watch webHtpPort\n! kobctl: no object, table or event matches 'webHtpPort', did you mean "
              "webHttpPort?\n[1]\n");
}
}  // namespace
}  // namespace kobd::test
