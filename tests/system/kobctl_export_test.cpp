// kobctl export and import: a router that was wiped is as before, and a wrong file changes nothing.
#include <sys/stat.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <sstream>

#include "client/dictionary/dictionary.h"
#include "tests/items.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"
#include "tests/system/object_samples.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
// Rows for tables whose checks look at them; the others take anything.
const struct
{
    const char* table;
    std::vector<const char*> columns;
} kCheckedRows[] = {
    {"IpMacBindTable", {"IP=192.168.1.120", "MAC=00:1A:2B:3C:4D:01"}},
    {"IpMacBindTable", {"IP=192.168.1.121", "MAC=00:1A:2B:3C:4D:02"}},
    {"FwUrlFilterTable", {"URL=a.example"}},
    {"FwUrlFilterTable", {"URL=b.example"}},
};

class KobctlExport : public DaemonTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        if (*KOBD_EMULATOR != 0) PutUciOnPath();  // the cellular lists are kept with it
        DaemonTest::SetUp();
    }

    void Wipe()
    {
        daemon_.End(SIGKILL);
        ASSERT_EQ(system("rm -rf /tmp/state"), 0);
        ASSERT_TRUE(daemon_.Start());
    }

    static std::string Export()
    {
        const Ran ran = RunLine("export");
        EXPECT_EQ(ran.status, 0) << ran.errors;
        return ran.output;
    }

    static Ran Import(const std::string& text)
    {
        std::ofstream("/tmp/router.conf") << text;
        return RunLine("import /tmp/router.conf");
    }

    static std::string Line(const std::string& text, const std::string& start)
    {
        const size_t at = text.find("\n" + start);
        return at == std::string::npos ? "" : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
    }
};

std::string SampleOf(const ColumnDef& column, int row)
{
    switch (column.type)
    {
        case VT_IPV4:
        case VT_IPV4_2: return "10.0.0." + std::to_string(row);
        case VT_MAC: return "02:00:00:00:00:0" + std::to_string(row);
        case VT_BOOL: return "1";
        case VT_STRING_PTR: return "";
        default:
            if (column.type <= VT_BOOL || column.type == VT_ENUM) return std::to_string(row);
            return column.length > 8 ? " =\\" + std::to_string(row) + "\n]" : "";
    }
}

// pIndex stays as it is: the cellular lists, which are kept in uci, do not keep that one.
void FillTable(const client::TableEntry& table)
{
    for (int row = 1; row <= std::min(2, static_cast<int>(table.max_rows)); ++row)
    {
        std::vector<std::string> words = {"table", "add", table.name};
        for (const ColumnDef& column : table.layout.columns)
            if (const std::string value = SampleOf(column, row);
                !value.empty() && column.alias_of == nullptr && strcmp(column.name, "pIndex") != 0)
                words.push_back(std::string(column.name) + "=" + value);
        const Ran ran = RunKobctl(words);
        if (ran.errors.find("its maximum") != std::string::npos) return;  // it had rows from the factory
        EXPECT_EQ(ran.status, 0) << table.name << ": " << ran.errors;
    }
}

// Gives everything that can be set a value other than the factory's.
void ChangeEverything()
{
    for (const client::ObjectEntry& object : kObjectRows)
    {
        // Unchecked names of values that have a check, which would refuse the samples.
        const bool unchecked = strcmp(object.name, "LANStartIP") == 0 || strcmp(object.name, "LANEndIP") == 0;
        if (object.access != Access::kReadWrite || object.shared || unchecked) continue;
        if (client::FindObject(object.name) != &object) continue;
        const std::string value = SamplesFor(object).good;
        EXPECT_EQ(Request(kSetSilent, {{kTagObjectName, object.name}, {kTagValue, value}}).result, 0) << object.name;
    }
    for (const client::TableEntry& table : kTableRows)
        if (table.Has(kobd::kAdd) && table.Has(kobd::kDel) && table.Has(kobd::kSet) && *table.validator == 0 &&
            table.list_of == std::string_view(table.name))
            FillTable(table);
    for (const auto& row : kCheckedRows)
    {
        std::vector<std::string> words = {"table", "add", row.table};
        words.insert(words.end(), row.columns.begin(), row.columns.end());
        EXPECT_EQ(RunKobctl(words).status, 0) << row.table;
    }
}

TEST_F(KobctlExport, AWipedRouterIsAsBefore)
{
    const std::string factory = Export();
    ChangeEverything();
    ASSERT_EQ(RunLine("export /tmp/changed.conf").status, 0);
    struct stat status;
    ASSERT_EQ(stat("/tmp/changed.conf", &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0600u) << "it holds passwords";
    const std::string changed = Export();
    EXPECT_NE(changed, factory);
    Wipe();
    EXPECT_EQ(Export(), factory);
    const Ran ran = RunLine("import /tmp/changed.conf");
    EXPECT_EQ(ran.status, 0) << ran.errors;
    EXPECT_EQ(Export(), changed);
    EXPECT_EQ(RunLine("import /tmp/changed.conf").output, "0 values and the rows of 0 tables set, 0 lines refused\n");
    Restart();
    EXPECT_EQ(Export(), changed) << "durable";
    const Ran back = Import(factory);
    const std::string now = Export();
    std::istringstream lines(factory);
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("# ") && back.errors.find(": " + line.substr(0, line.find('=') + 1)) == std::string::npos)
        {
            EXPECT_NE(now.find(line + "\n"), std::string::npos) << line << " is neither back nor refused\n"
                                                                << back.errors;
        }
}

// kobctl itself takes 0 and 1 for a flag; other modules and the daemon take any integer.
TEST_F(KobctlExport, FlagsOfOtherModulesAreImportedAgain)
{
    const std::string index = RunLine("table add node_588Table").output;
    std::ofstream("/tmp/changes", std::ios::binary) << Row("node_588Table", std::stoi(index)) + Column("Enable", "192");
    ASSERT_EQ(Request(kTableSet, {{kTagValue, "/tmp/changes"}}).result, 0);
    const std::string with_flag = Export();
    ASSERT_NE(with_flag.find("\nEnable=192\n"), std::string::npos);
    ASSERT_EQ(RunLine("table del node_588Table " + index.substr(0, index.size() - 1)).status, 0);
    EXPECT_EQ(Import(with_flag).errors, "");
    EXPECT_EQ(Export(), with_flag);
}

TEST_F(KobctlExport, WhatOnlyPassesTogetherIsSentTogether)
{
    const char* settings =
        "networkLanSettingStart=10.7.7.10\nnetworkLanSettingEnd=10.7.7.20\nnetworkLanSettingIp=10.7.7.1\n"
        "networkLanSettingMask=255.255.255.128\nwebHttpPort=81\nend\n";
    const Ran ran = Import(settings);
    EXPECT_EQ(ran.status, 0) << ran.errors;
    EXPECT_EQ(RunLine("get networkLanSettingStart networkLanSettingMask webHttpPort").output,
              "networkLanSettingStart=10.7.7.10\nnetworkLanSettingMask=255.255.255.128\nwebHttpPort=81\n");
}

TEST_F(KobctlExport, AWrongFileIsNamedLineByLineAndChangesNothing)
{
    const struct
    {
        const char* text;
        std::vector<const char*> errors;  // after the file's name
    } kCases[] = {
        {"webHttpPort=81\n", {":1: the last line is not 'end', so the file is incomplete"}},
        {"webHttpPort=81\nend\nwebHttpEnable=0\n", {":3: nothing may follow 'end'"}},
        {"webHttpPort\n=3\nx=\\q\nend\n", {":1: neither NAME", ":2: neither NAME", ":3: x: a backslash is written"}},
        {"webHttpPort=81\nwebHttpEnable=2\nwebHttpPort=82\nend\n",
         {":2: webHttpEnable=2: it takes 0 or 1", ":3: webHttpPort is already in line 1"}},
        {"IMEI=1\nwebHttpPrt=1\nFwUrlFilterTable=1\nsystemReboot=1\nlteLockband5g=78;\nend\n",
         {":1: IMEI is read-only", ":2: there is no object webHttpPrt, did you mean webHttpPort?",
          ":3: FwUrlFilterTable is a table, not an object", ":4: systemReboot is not part of an export",
          ":5: lteLockband5g is not part of an export"}},
        {"webHttpPort=81\n[FwUrlFilterTbl]\n[UPnPTable]\n[PortRedirectTable]\nend\n",
         {":2: there is no table FwUrlFilterTbl, did you mean FwUrlFilterTable?", ":3: UPnPTable cannot be set",
          ":4: PortRedirectTable is another name of the rows of FwPortForwardTable"}},
        {"[FwPortFilterTable row]\n[FwPortFilterTable]\nx=1\n[FwPortFilterTable row]\nend\n",
         {":1: [FwPortFilterTable row] must follow [FwPortFilterTable]",
          ":3: x: a column must follow [FwPortFilterTable row]"}},
        {"webHttpPort=81\n[FwPortFilterTable]\n[FwPortFilterTable row]\nProto=tcp\nProtocol=tcp\nProtocol=udp\n"
         "[FwPortFilterTable]\nend\n",
         {":4: FwPortFilterTable: there is no column Proto", ":6: Protocol is already in line 5",
          ":7: FwPortFilterTable is already in line 2"}},
        {"webHttpPort=81\n[DialStatus]\n[DialStatus row]\nend\n", {":2: "}},
    };
    const std::string before = Export();
    for (const auto& c : kCases)
    {
        const Ran ran = Import(c.text);
        EXPECT_EQ(ran.status, 1) << c.text;
        for (const char* error : c.errors)
            EXPECT_NE(ran.errors.find(std::string("kobctl: /tmp/router.conf") + error), std::string::npos)
                << c.text << "misses " << error << "\n"
                << ran.errors;
        EXPECT_NE(ran.errors.find("; nothing was changed"), std::string::npos) << ran.errors;
        EXPECT_EQ(Export(), before) << c.text;
    }
}

TEST_F(KobctlExport, WhatOnlyTheDaemonRefusesIsNamedAndRowsStay)
{
    ASSERT_EQ(RunLine("table add FwUrlFilterTable URL=old.example").status, 0);
    ASSERT_EQ(RunLine("table add FwUrlFilterTable").status, 0) << "an empty row, which the check would refuse";
    const std::string rows = Export();
    const Ran ran = Import(
        "webHttpPort=81\nlteLockpin=1,12345678901\n[FwUrlFilterTable]\n[FwUrlFilterTable row]\n"
        "URL=new.example\n[FwUrlFilterTable row]\nURL=192.168.1.1\nend\n");
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.output,
              "/tmp/router.conf:1: webHttpPort set\n"
              "1 value and the rows of 0 tables set, 2 lines refused\n");
    EXPECT_NE(ran.errors.find("/tmp/router.conf:2: lteLockpin=1,12345678901: it takes 0 or 1, a comma"),
              std::string::npos)
        << ran.errors;
    EXPECT_NE(ran.errors.find("/tmp/router.conf:3: FwUrlFilterTable: "), std::string::npos) << ran.errors;
    EXPECT_NE(ran.errors.find("the earlier rows are restored"), std::string::npos) << ran.errors;
    const std::string after = Export();
    EXPECT_EQ(after.substr(after.find("[FwUrl")), rows.substr(rows.find("[FwUrl")));
    EXPECT_EQ(Line(after, "webHttpPort="), "webHttpPort=81");
}

// Edits of an export that a check of other rows would refuse in the wrong order.
TEST_F(KobctlExport, RowsCanBeTakenOutTurnedRoundAndPutInBetween)
{
    const std::string a = "[IpMacBindTable row]\nIP=192.168.1.120\nMAC=00:1A:2B:3C:4D:01\n";
    const std::string b = "[IpMacBindTable row]\nIP=192.168.1.121\nMAC=00:1A:2B:3C:4D:02\n";
    const std::string c = "[IpMacBindTable row]\nIP=192.168.1.122\nMAC=00:1A:2B:3C:4D:03\n";
    for (const std::string& rows : {a + b + c, b + c, c + b, c + a + b, b, std::string(), a})
    {
        const Ran ran = Import("[IpMacBindTable]\n" + rows + "end\n");
        ASSERT_EQ(ran.status, 0) << rows << ran.errors;
        std::string now = Export();
        now = now.substr(now.find("[IpMacBindTable]"));
        now = now.substr(0, now.find("\n[IPv4RoutingTable]") + 1);
        std::istringstream wanted("[IpMacBindTable]\n" + rows);
        for (std::string line; std::getline(wanted, line);)
        {
            const size_t at = now.find(line + "\n");
            ASSERT_NE(at, std::string::npos) << line << " of\n" << rows << "is not left in\n" << now;
            now.erase(0, at + line.size() + 1);
        }
        EXPECT_EQ(now.find(" row]"), std::string::npos) << rows;
    }
}

TEST_F(KobctlExport, WithoutADaemonNothingIsWritten)
{
    daemon_.End(SIGTERM);
    EXPECT_EQ(RunLine("export /tmp/none.conf").status, 1);
    struct stat status;
    EXPECT_NE(stat("/tmp/none.conf", &status), 0);
    EXPECT_NE(Import("webHttpPort=81\nend\n").errors.find("Message not running (3)"), std::string::npos);
    EXPECT_EQ(RunLine("export /dev/null").status, 1);
}
}  // namespace
}  // namespace kobd::test
