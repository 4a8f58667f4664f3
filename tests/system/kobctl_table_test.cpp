// kobctl's table commands against the real daemon, as whole sessions.

#include <cstdlib>

#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class KobctlTable : public DaemonTest
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << "dump files are removed";
        EXPECT_EQ(FilesLike("/tmp/kobctl-"), 0u) << "change files are removed";
    }
};

struct Session
{
    const char* name;
    const char* transcript;
};

void PrintTo(const Session& session, std::ostream* out) { *out << session.name; }

class KobctlSession : public KobctlTable, public testing::WithParamInterface<Session>
{
};

TEST_P(KobctlSession, ReadsAsWritten) { EXPECT_EQ(Replay(GetParam().transcript), GetParam().transcript); }

const Session kSessions[] = {
    {"RowsFromBirthToEnd",
     R"session($ kobctl table add FwIpFilterTable DestIPAddress=192.168.1.9 IP_LIST=a
1
$ kobctl table add FwIpFilterTable --json
{"table":"FwIpFilterTable","index":2}
$ kobctl table add FwIpFilterTable --parent Device.Firewall. 'IP_LIST=two words'
3
$ kobctl table set FwIpFilterTable 2 DestIPAddress=10.0.0.2 FwIpFilterTable 1 IP_LIST=
$ kobctl table set --json FwIpFilterTable 2 IP_LIST=b=c FwPortFilterTable 1 Protocol=tcp
{"error":"FwPortFilterTable has no row 1, it is empty: Table index not found (13); nothing was set","code":13}
! kobctl: FwPortFilterTable has no row 1, it is empty: Table index not found (13); nothing was set
[1]
$ kobctl table set FwPortForwardTable 1 DestPort=80
! kobctl: FwPortForwardTable has no row 1, it is empty: Table index not found (13); nothing was set
[1]
$ kobctl table set --silent --json FwIpFilterTable 2 IP_LIST=b=c
{"set":[{"table":"FwIpFilterTable","index":2}]}
$ kobctl table dump FwIpFilterTable FwPortFilterTable FwIpFilterTable
FwIpFilterTable, 3 rows
index  DestIPAddress  IP_LIST
    1  192.168.1.9    -
    2  10.0.0.2       b=c
    3  -              two words

FwPortFilterTable, no rows
$ kobctl table get FwIpFilterTable 3 1 --json
{"FwIpFilterTable":[{"index":3,"DestIPAddress":"","IP_LIST":"two words"},{"index":1,"DestIPAddress":"192.168.1.9","IP_LIST":""}]}
$ kobctl table del FwIpFilterTable 1 3
$ kobctl table dump --json FwIpFilterTable FwPortFilterTable
{"FwIpFilterTable":[{"index":2,"DestIPAddress":"10.0.0.2","IP_LIST":"b=c"}],"FwPortFilterTable":[]}
)session"},
    {"AnApnIsEnabledInItsRowAndInNvramAlike",
     R"session($ kobctl set tr069BindApnIndex=3
! kobctl: tr069BindApnIndex=3: enable the apn first (validTr069BindApnIndex); it takes an integer from 1 to 4; the number of a configured and enabled APN: Invalid argument (2)
[1]
$ kobctl table set ApnConfigTable 2 ApnEnable=1
$ kobctl nvram get apn3_enable
1
$ kobctl set tr069BindApnIndex=3 lteDefaultGateway=3
$ kobctl nvram set apn2_enable=0
$ kobctl set tr069BindApnIndex=2
! kobctl: tr069BindApnIndex=2: enable the apn first (validTr069BindApnIndex); it takes an integer from 1 to 4; the number of a configured and enabled APN: Invalid argument (2)
[1]
)session"},
    {"ValuesAreCheckedAgainstTheirColumns",
     R"session($ kobctl table set node_632Table 1 Active=2
! kobctl: node_632Table 1: Active=2: it takes 0 or 1: Invalid argument (2)
[1]
$ kobctl table set node_632Table 1 Active=0 IPv4AddressNumberOfEntries=4294967296
! kobctl: node_632Table 1: IPv4AddressNumberOfEntries=4294967296: it takes an integer from 0 to 4294967295: Invalid argument (2)
[1]
$ kobctl table set node_632Table 1 IPv4AddressNumberOfEntries=-1
! kobctl: node_632Table 1: IPv4AddressNumberOfEntries=-1: it takes an integer from 0 to 4294967295: Invalid argument (2)
[1]
$ kobctl table set node_632Table 1 IPv4AddressNumberOfEntries=
! kobctl: node_632Table 1: IPv4AddressNumberOfEntries=: it takes an integer from 0 to 4294967295: Invalid argument (2)
[1]
$ kobctl table set node_589Table 1 BytesSent=18446744073709551616
! kobctl: node_589Table 1: BytesSent=18446744073709551616: it takes an integer from 0 to 18446744073709551615: Invalid argument (2)
[1]
$ kobctl table set node_589Table 1 BytesSent=09
! kobctl: node_589Table 1: BytesSent=09: it takes an integer from 0 to 18446744073709551615: Invalid argument (2)
[1]
$ kobctl table set IpMacBindTable 1 IP=1.2.3
! kobctl: IpMacBindTable 1: IP=1.2.3: it takes an IPv4 address like 192.168.1.2: Invalid argument (2)
[1]
$ kobctl table set IpMacBindTable 1 MAC=00:1A:2B:3C:4D
! kobctl: IpMacBindTable 1: MAC=00:1A:2B:3C:4D: it takes a MAC address like 00:1A:2B:3C:4D:5E: Invalid argument (2)
[1]
$ kobctl table set IpMacBindTable 1 Name=12345678901234567890123456789012
! kobctl: IpMacBindTable 1: Name=12345678901234567890123456789012: it takes a text of 0 to 31 bytes: Invalid argument (2)
[1]
)session"},
    {"WideTablesStandOnTheirSide",
     R"session($ kobctl table add FwParentControlTable Name=boys 'Weekdays=Mon,Tue' StartTime=20:00
1
$ kobctl table add FwParentControlTable 'Name=	tab ü'
2
$ kobctl table get FwParentControlTable 1 2
FwParentControlTable, 2 rows
index 1
  Enable         -
  ParentCtrList  -
  Name           boys
  Weekdays       Mon,Tue
  Period         Mon,Tue
  TimeStart      20:00
  StartTime      20:00
  TimeStop       -
  EndTime        -
  Host           -
  MAC            -
  Target         -
index 2
  Enable         -
  ParentCtrList  -
  Name           \x09tab ü
  Weekdays       -
  Period         -
  TimeStart      -
  StartTime      -
  TimeStop       -
  EndTime        -
  Host           -
  MAC            -
  Target         -
)session"},
    {"RefusalsSayWhatIsThere",
     R"session($ kobctl table get FwIpFilterTable 1
! kobctl: FwIpFilterTable has no row 1, it is empty: Table index not found (13)
[1]
$ kobctl table add FwIpFilterTable
1
$ kobctl table add FwIpFilterTable
2
$ kobctl table get FwIpFilterTable 1 7 2
! kobctl: FwIpFilterTable has no row 7, it has 1, 2: Table index not found (13)
[1]
$ kobctl table set FwIpFilterTable 7 IP_LIST=a
! kobctl: FwIpFilterTable has no row 7, it has 1, 2: Table index not found (13)
[1]
$ kobctl table del FwIpFilterTable 1 7 2
! kobctl: FwIpFilterTable has no row 7, it has 2: Table index not found (13); deleted before it: 1
[1]
$ kobctl table get UPnPTable 1
! kobctl: UPnPTable has no get operation, it has next: Method unavailable (16)
[1]
$ kobctl table set FlowTable 1 Noise=3
! kobctl: FlowTable has no set operation, it has get, next: Method unavailable (16)
[1]
$ kobctl table add UPnPTable
! kobctl: UPnPTable has no add operation, it has next: Method unavailable (16)
[1]
$ kobctl table add IpMacBindTable --parent Device.
! kobctl: IpMacBindTable has no setPPath operation, it has add, del, get, set, next, validate: Method unavailable (16)
[1]
$ kobctl table add node_traceTable Host=1.1.1.1
! kobctl: node_traceTable has no set operation, it has add, get, setPPath, next: Method unavailable (16); nothing was added
[1]
$ kobctl table del UPnPTable 1
! kobctl: UPnPTable has no del operation, it has next: Method unavailable (16)
[1]
)session"},
    {"NamesAndWordsAreChecked",
     R"session($ kobctl table dump FwIpFilterTable FwIpFiltrTable
! kobctl: there is no table FwIpFiltrTable, did you mean FwIpFilterTable?: Obj or table not found (1)
[1]
$ kobctl table dump webHttpPort
! kobctl: there is no table webHttpPort: Obj or table not found (1)
[1]
$ kobctl table max FwIpFilterTabl
! kobctl: there is no table FwIpFilterTabl, did you mean FwIpFilterTable?: Obj or table not found (1)
[1]
$ kobctl table set FwIpFilterTable 1 IP_LSIT=a
! kobctl: FwIpFilterTable 1: there is no column IP_LSIT, did you mean IP_LIST?: Element not found (12)
[1]
$ kobctl table add FwIpFilterTable IP_LIST
! kobctl: 'IP_LIST' is neither COLUMN=VALUE nor a table; see kobctl help table
[2]
$ kobctl table set FwIpFilterTable 1 IP_LIST=a FwPortFiltrTable 1 Protocol=tcp
! kobctl: 'FwPortFiltrTable' is neither COLUMN=VALUE nor a table, did you mean FwPortFilterTable?; see kobctl help table
[2]
$ kobctl table set FwIpFilterTable 1 FwPortFilterTable 1 Protocol=tcp
! kobctl: FwIpFilterTable 1 needs COLUMN=VALUE; see kobctl help table
[2]
$ kobctl table set FwIpFilterTable IP_LIST=a IP_LIST=b
! kobctl: a row index is a number from 0 to 2147483647, not 'IP_LIST=a'; see kobctl help table
[2]
$ kobctl table get FwIpFilterTable 2147483648
! kobctl: a row index is a number from 0 to 2147483647, not '2147483648'; see kobctl help table
[2]
$ kobctl table del FwIpFilterTable -1
! kobctl: a row index is a number from 0 to 2147483647, not '-1'; see kobctl help table
[2]
$ kobctl table get FwIpFilterTable
! kobctl: table get takes TABLE INDEX...; see kobctl help table
[2]
$ kobctl table get FwIpFilterTable 1 --silent
! kobctl: table get takes no --silent; see kobctl help table
[2]
$ kobctl table list --parent Device.
! kobctl: table list takes no --parent; see kobctl help table
[2]
$ kobctl table drop FwIpFilterTable
! kobctl: table takes one of list, describe, columns, max, dump, get, set, add, del, not 'drop', did you mean dump?; see kobctl help table
[2]
$ kobctl table dump FwIpFilterTable
FwIpFilterTable, no rows
)session"},
    {"TheCatalogueIsDescribed",
     R"session($ kobctl table list 'Ip*'
table           rows  operations
IpMacBindTable    16  add del get set next validate
$ kobctl table list 'FwPort?[oi]*Table' --json
[{"name":"FwPortFilterTable","max_rows":32,"operations":["add","del","get","set","setPPath","next"]},{"name":"FwPortForwardTable","max_rows":32,"operations":["add","del","get","set","next","validate"]}]
$ kobctl table list nothing
! kobctl: no table matches 'nothing'
[1]
$ kobctl table columns IPv4RoutingTable
column            type  bytes  alias
IP                text     64  -
desIP             text     64  another name of IP
Netmask           text     64  -
Subnetmask        text     64  another name of Netmask
Interface         text    256  -
Gateway           text     64  -
Status            text     20  -
Enable            text     64  -
Alias             text    128  -
StaticRoute       text     20  -
ForwardingPolicy  text     20  -
Origin            text     20  -
ForwardingMetric  text     20  -
$ kobctl table columns EthernetStats --json
[{"name":"BytesSent","type":"unsigned 64-bit integer","width":8,"takes":"an integer from 0 to 18446744073709551615"},{"name":"BytesReceived","type":"unsigned 64-bit integer","width":8,"takes":"an integer from 0 to 18446744073709551615"}]
$ kobctl describe SmsTable
SmsTable
  rows        at most 150, of 12 bytes
  operations  next
  column   holds
  Tag      an integer from -2147483648 to 2147483647
  Content  no value: the list keeps this text itself
$ kobctl table max SmsTable
150
$ kobctl table max SmsTable --json
{"SmsTable":150}
$ kobctl complete-names columns IpMacBindTable
IP
MAC
Name
)session"},
};  // namespace

INSTANTIATE_TEST_SUITE_P(Sessions, KobctlSession, testing::ValuesIn(kSessions),
                         [](const auto& one) { return std::string(one.param.name); });

struct TypedRow
{
    const char* table;
    std::vector<std::string> values;
    const char* json;  // what follows the index
};

TEST_F(KobctlTable, ValuesKeepTheirTypes)
{
    const TypedRow rows[] = {
        {"node_632Table",
         {"Active=1", "IPv4AddressNumberOfEntries=4294967295", "Alias=9"},
         R"("pPath":"","Alias":"9","Chaddr":"","Active":1,"IPv4AddressNumberOfEntries":4294967295)"},
        {"node_589Table",
         {"BytesSent=18446744073709551615", "BytesReceived=0x10", "pPath=7"},
         R"("pPath":"7","BytesSent":18446744073709551615,"BytesReceived":16,"PacketsSent":0,"PacketsReceived":0,)"
         R"("ErrorsSent":0,"ErrorsReceived":0,"UnicastPacketsSent":0,"UnicastPacketsReceived":0,)"
         R"("DiscardPacketsSent":0,"DiscardPacketsReceived":0,"MulticastPacketsSent":0,)"
         R"("MulticastPacketsReceived":0,"BroadcastPacketsSent":0,"BroadcastPacketsReceived":0,)"
         R"("UnknownProtoPacketsReceived":0)"},
    };
    for (const TypedRow& row : rows)
    {
        std::vector<std::string> words = {"table", "add", row.table};
        words.insert(words.end(), row.values.begin(), row.values.end());
        std::string index = RunKobctl(words).output;
        ASSERT_FALSE(index.empty());
        index.pop_back();  // the line end
        EXPECT_EQ(RunKobctl({"table", "get", row.table, index, "--json"}).output,
                  std::string("{\"") + row.table + "\":[{\"index\":" + index + "," + row.json + "}]}\n");
    }
}

TEST_F(KobctlTable, AFullTableSaysItsMaximum)
{
    for (int i = 0; i < 32; ++i) ASSERT_EQ(Request(kTableAdd, {{kTagTableName, "FwIpFilterTable"}}).result, 0);
    const Ran ran = RunKobctl({"table", "add", "FwIpFilterTable", "IP_LIST=a"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.errors, "kobctl: FwIpFilterTable holds 32 rows, its maximum: Table is full (15)\n");
}

TEST_F(KobctlTable, RowsThatDoNotFitOneReplyAreAskedForInParts)
{
    std::vector<std::string> words = {"table", "get", "FwParentControlTable"};
    for (int i = 1; i <= 32; ++i)
    {
        ASSERT_EQ(Request(kTableAdd, {{kTagTableName, "FwParentControlTable"}}).result, 0);
        words.push_back(std::to_string(i));
    }
    const std::string name(127, 'n');
    ASSERT_EQ(RunKobctl({"table", "set", "FwParentControlTable", "32", "Name=" + name}).status, 0);
    const Ran all = RunKobctl(words);
    EXPECT_EQ(all.status, 0);
    EXPECT_TRUE(all.output.starts_with("FwParentControlTable, 32 rows\nindex 1\n"));
    EXPECT_NE(all.output.find("\nindex 32\n"), std::string::npos);
    EXPECT_NE(all.output.find("  " + name + "\n"), std::string::npos);
    words.back() = "33";
    EXPECT_EQ(RunKobctl(words).output, "") << "one row of many is missing: nothing is shown";
}

TEST_F(KobctlTable, ARowThatItsCheckRefusesIsTakenBack)
{
    const Ran added = RunKobctl({"table", "add", "FwUrlFilterTable", "URL=192.168.1.1"});
    EXPECT_EQ(added.status, 1);
    EXPECT_EQ(added.output, "");
    EXPECT_TRUE(added.errors.starts_with("kobctl: FwUrlFilterTable 1 URL=192.168.1.1: ")) << added.errors;
    EXPECT_NE(added.errors.find(" (validUrlFilter); it takes rows with a host or URL"), std::string::npos)
        << added.errors;
    EXPECT_NE(added.errors.find("; the new row 1 was deleted again\n"), std::string::npos) << added.errors;
    EXPECT_EQ(RunKobctl({"table", "dump", "FwUrlFilterTable"}).output, "FwUrlFilterTable, no rows\n");
}

TEST_F(KobctlTable, ABatchWithARefusedRowChangesNothing)
{
    ASSERT_EQ(Request(kTableAdd, {{kTagTableName, "FwIpFilterTable"}}).result, 0);
    ASSERT_EQ(Request(kTableAdd, {{kTagTableName, "FwUrlFilterTable"}}).result, 0);
    const Ran set = RunLine("table set FwIpFilterTable 1 IP_LIST=a FwUrlFilterTable 1 URL=192.168.1.1");
    EXPECT_EQ(set.status, 1);
    EXPECT_TRUE(set.errors.starts_with("kobctl: FwUrlFilterTable 1 URL=192.168.1.1: ")) << set.errors;
    EXPECT_EQ(RunKobctl({"table", "dump", "--json", "FwIpFilterTable"}).output,
              "{\"FwIpFilterTable\":[{\"index\":1,\"DestIPAddress\":\"\",\"IP_LIST\":\"\"}]}\n");
}

TEST_F(KobctlTable, WithoutADaemonEveryCommandSaysSo)
{
    daemon_.End(SIGKILL);
    for (const char* command :
         {"dump FwIpFilterTable", "get FwIpFilterTable 1", "max FwIpFilterTable", "set FwIpFilterTable 1 IP_LIST=a",
          "add FwIpFilterTable IP_LIST=a", "del FwIpFilterTable 1"})
    {
        const Ran ran = RunLine(std::string("table ") + command);
        EXPECT_EQ(ran.status, 1) << command;
        EXPECT_NE(ran.errors.find("Message not running (3)"), std::string::npos) << command << ": " << ran.errors;
    }
}
}  // namespace
}  // namespace kobd::test
