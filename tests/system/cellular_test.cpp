// The cellular tables through the real daemon, the real shell and our uci: what a client reads,
// changes and finds again after a restart.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <thread>

#include "daemon/base/tlv.h"
#include "kobd_client.h"
#include "tests/items.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
constexpr char kState[] = "/tmp/state";
constexpr char kChangeFile[] = "/tmp/cellular-change";
constexpr int kLoadMs = 200000;  // a load starts hundreds of processes, which an emulator runs slowly

struct Table
{
    const char* name;
    const char* word;
    const char* field;                // the one that the tests look at
    std::initializer_list<int> rows;  // in the configuration at start
};

constexpr Table kCellularTables[] = {
    {"CellularInterfaceTable", "cellularinterface", "X_QUELMOR_Network_Status.Cell_ID", {0, 1, 16}},
    {"CellularUSIMTable", "cellularusim", "PIN", {0, 1, 16}},
    {"CellularStatsTable", "cellularstats", "UnknownProtoPacketsReceived", {0, 1, 16}},
    {"cellularaccesspointTable", "cellularaccesspoint", "Password", {0, 1, 16}},
};

void PrintTo(const Table& table, std::ostream* out) { *out << table.name; }

class CellularSystem : public testing::TestWithParam<Table>
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd* /tmp/uci-on-path"), 0);
        // Elsewhere the daemon finds our uci by itself.
        if (*KOBD_EMULATOR != 0) PutUciOnPath();
    }
    void TearDown() override { Stop(); }

    void Start()
    {
        ASSERT_TRUE(daemon_.Start());
        ASSERT_EQ(kobd_client_open(&client_), 0);
        kobd_client_set_timeout(client_, kLoadMs);
    }

    void Stop()
    {
        if (client_ != nullptr) kobd_client_close(client_);
        client_ = nullptr;
        if (daemon_.Process() > 0) daemon_.End(SIGKILL);
    }

    // Sections s1, s2, ... in the configuration files, as uci keeps them; values v1, v2, ...
    static void Configure(int rows)
    {
        ASSERT_EQ(system("rm -rf /tmp/state/uci; mkdir -p /tmp/state/uci"), 0);
        std::ofstream entries("/tmp/state/uci/tr069_interface");
        std::ofstream values("/tmp/state/uci/tr069_cellular");
        for (int row = 1; row <= rows; ++row)
        {
            entries << "s" << row << "=" << GetParam().word << "\ns" << row << ".index=" << row << "\n";
            values << "s" << row << "=values\ns" << row << "." << GetParam().field << "=v" << row << "\n";
        }
        entries << "end\n";
        values << "end\n";
    }

    int Call(kobd_request request, const char* table, int32_t index)
    {
        kobd_items* items = kobd_items_new();
        kobd_items_add_text(items, KOBD_TAG_TABLE_NAME, table);
        if (index >= 0) kobd_items_add_number(items, KOBD_TAG_ROW_INDEX, index);
        const int code = kobd_call(client_, request, items);
        kobd_items_free(items);
        return code;
    }

    // The index that add answers, -1 when it refuses.
    int32_t AddedIndex(int* code)
    {
        kobd_item item{};
        *code = Call(KOBD_TABLE_ADD, GetParam().name, -1);
        return *code == 0 && kobd_reply_next(client_, &item) == 1 ? item.number : -1;
    }

    // Rows in a dump of the table.
    int Rows()
    {
        kobd_item item{};
        if (Call(KOBD_TABLE_DUMP, GetParam().name, -1) != 0 || kobd_reply_next(client_, &item) != 1) return -1;
        const std::string dump = FileText(item.text);
        unlink(item.text);
        int rows = 0;
        TlvReader reader(dump);
        while (const auto one = reader.Next()) rows += one->tag == kTagRowIndex;
        return rows;
    }

    // The values of a row by column; empty when there is no such row.
    std::map<std::string, std::string> Row(int32_t index)
    {
        std::map<std::string, std::string> row;
        std::string column;
        kobd_item item{};
        if (Call(KOBD_TABLE_GET, GetParam().name, index) != 0) return row;
        while (kobd_reply_next(client_, &item) == 1)
        {
            if (item.tag == KOBD_TAG_COLUMN_NAME) column = item.text;
            if (item.tag == KOBD_TAG_VALUE && item.text != nullptr) row[column] = item.text;
        }
        return row;
    }

    std::string Value(int32_t index)
    {
        auto row = Row(index);
        return row.contains(GetParam().field) ? row[GetParam().field] : "no row";
    }

    int Change(int32_t index, const std::map<std::string, std::string>& values)
    {
        std::string change = test::Row(GetParam().name, index);
        for (const auto& [column, value] : values) change += Column(column, value);
        std::ofstream(kChangeFile, std::ios::binary) << change;
        kobd_items* items = kobd_items_new();
        kobd_items_add_text(items, KOBD_TAG_VALUE, kChangeFile);
        const int code = kobd_call(client_, KOBD_TABLE_SET, items);
        kobd_items_free(items);
        return code;
    }

    int Set(int32_t index, const std::string& value) { return Change(index, {{GetParam().field, value}}); }

    DaemonProcess daemon_{kState};
    kobd_client* client_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Tables, CellularSystem, testing::ValuesIn(kCellularTables),
                         [](const auto& one) { return std::string(one.param.word); });

TEST_P(CellularSystem, ServesWhatTheConfigurationHolds)
{
    for (const int rows : GetParam().rows)
    {
        SCOPED_TRACE(rows);
        Stop();
        Configure(rows);
        Start();
        EXPECT_EQ(Rows(), rows);
        EXPECT_EQ(Value(rows + 1), "no row");
        if (rows == 0) continue;
        EXPECT_EQ(Value(1), "v1");
        EXPECT_EQ(Value(rows), "v" + std::to_string(rows));
        int code = 0;
        AddedIndex(&code);
        EXPECT_EQ(code, rows < 64 ? 0 : 15);
        EXPECT_EQ(Set(rows + 1, "one more"), rows < 64 ? 0 : 13);
    }
}

TEST_P(CellularSystem, TextsSurviveUnchangedAndAreNeverRun)
{
    const std::string text = "'; touch /tmp/x; '$(touch /tmp/x)`touch /tmp/x`\n\"two\" \\lines\n$HOME";
    Start();
    int code = 0;
    const int32_t index = AddedIndex(&code);
    ASSERT_EQ(index, 1);
    ASSERT_EQ(Set(index, text), 0);
    ASSERT_EQ(Set(2, std::string(255, '\'')), 0);
    EXPECT_EQ(Value(1), text);
    Stop();  // by SIGKILL; nothing of tr069_cellular was ever committed
    Start();
    EXPECT_EQ(Rows(), 2);
    EXPECT_EQ(Value(1), text);
    EXPECT_EQ(Value(2), std::string(255, '\''));
    EXPECT_NE(access("/tmp/x", F_OK), 0);
}

TEST_P(CellularSystem, ADeletedRowIsGoneForGood)
{
    Start();
    for (const int32_t index : {1, 2, 3}) ASSERT_EQ(Set(index, "v" + std::to_string(index)), 0);
    ASSERT_EQ(Call(KOBD_TABLE_DEL, GetParam().name, 1), 0);
    EXPECT_EQ(Call(KOBD_TABLE_DEL, GetParam().name, 9), 13);
    // Loads number the interface family anew: its index is not stored where they look.
    const bool numbered = std::string_view(GetParam().word) == "cellularinterface";
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_EQ(Rows(), 2);
        EXPECT_EQ(Value(1), numbered ? "v2" : "no row");
        EXPECT_EQ(Value(2), numbered ? "v3" : "v2");
        EXPECT_EQ(Value(3), numbered ? "no row" : "v3");
        Stop();
        Start();
    }
}

TEST_P(CellularSystem, AKillInTheMiddleOfASaveLeavesOldOrNewValues)
{
    std::map<std::string, std::string> values[2];
    Start();
    ASSERT_EQ(Set(1, "other"), 0);
    ASSERT_EQ(Set(2, "x"), 0);
    for (const auto& [column, value] : Row(2))
        if (column != "pIndex")
            for (int side : {0, 1}) values[side][column] = side == 0 ? "old" : "new";
    for (int round = 0; round < 4; ++round)
    {
        ASSERT_EQ(Change(2, values[round % 2]), 0);
        const pid_t daemon = daemon_.Process();
        std::thread killer(
            [daemon, round]
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(3 + 13 * round));
                kill(daemon, SIGKILL);
            });
        kobd_client_set_timeout(client_, 500);
        const int answered = Change(2, values[(round + 1) % 2]);
        killer.join();
        Stop();
        usleep(200000);  // the command in hand ends by itself
        Start();
        EXPECT_EQ(Rows(), 2);
        EXPECT_EQ(Value(1), "other");
        auto row = Row(2);
        row.erase("pIndex");
        for (const auto& [column, value] : row) EXPECT_TRUE(value == "old" || value == "new") << column << " " << value;
        if (answered == 0)
        {
            EXPECT_EQ(row, values[(round + 1) % 2]) << "what was answered is stored";
        }
    }
}

TEST_P(CellularSystem, AUciThatFailsLeavesTheRowsInMemory)
{
    PutScriptOnPath("echo 'uci: broken' >&2; exit 1\n");
    Start();
    EXPECT_EQ(Rows(), 0);
    EXPECT_EQ(Set(1, "kept"), 0);
    EXPECT_EQ(Value(1), "kept");
    EXPECT_NE(FileText("/tmp/kobd.log").find("no configuration section \"\", nothing is written"), std::string::npos);
    EXPECT_EQ(Call(KOBD_TABLE_DEL, GetParam().name, 1), 0);
    EXPECT_EQ(Rows(), 0);
}

TEST_P(CellularSystem, ASlowUciOnlyTakesLonger)
{
    PutScriptOnPath("sleep 0.05\n" + ExecUci());
    Configure(1);
    Start();
    EXPECT_EQ(Rows(), 1);
    EXPECT_EQ(Set(2, "slow"), 0);
    EXPECT_EQ(Value(2), "slow");
    EXPECT_EQ(Value(1), "v1");
}

// A command that gave no answer is none: what is stored stays, and the next request finds it.
TEST_P(CellularSystem, AUciThatIsKilledIsNoAnswer)
{
    const struct
    {
        const char* script;
        const char* line;  // in the log
    } kCases[] = {
        {"case \"$*\" in *get*) kill -9 $$;; esac\n", "uci get: it could not be run, or did not end within 10 seconds"},
        {"case \"$*\" in *get*index) exit 127;; esac\n", "ListInit"},
    };
    for (const auto& one : kCases)
    {
        PutScriptOnPath(one.script + ExecUci());
        Configure(2);
        Start();
        const Answer answer = Request(kTableDump, {{kTagTableName, GetParam().name}}, kLoadMs);
        EXPECT_EQ(answer.result, 0) << "a dump leaves the table out";
        EXPECT_EQ(Call(KOBD_TABLE_GET, GetParam().name, 1), 4) << one.script;
        EXPECT_EQ(Set(1, "overwritten"), 4) << one.script;
        EXPECT_NE(FileText("/tmp/kobd.log").find(one.line), std::string::npos) << one.script;
        EXPECT_NE(FileText("/tmp/kobd.log").find("the list could not be loaded"), std::string::npos);
        PutScriptOnPath(ExecUci());
        EXPECT_EQ(Value(1), "v1") << "the next request loads it whole: " << one.script;
        Stop();
    }
}

// The C library's system() would have the whole process ignore an interrupt while a command runs.
TEST_P(CellularSystem, AnInterruptDuringASaveEndsTheDaemon)
{
    PutScriptOnPath("sleep 0.05\n" + ExecUci());
    Start();
    const pid_t daemon = daemon_.Process();
    std::thread sender(
        [daemon]
        {
            usleep(250000);  // in the middle of the commands
            kill(daemon, SIGINT);
        });
    Set(1, "kept");  // answered when it is done within a second and a half
    sender.join();
    const auto logged = [] { return FileText("/tmp/kobd.log").find("recv signal:2\n") != std::string::npos; };
    for (int i = 0; i < 30 && !logged(); ++i) usleep(100000);
    EXPECT_TRUE(logged());
}
}  // namespace
}  // namespace kobd::test
