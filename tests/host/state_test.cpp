// The database of the state folder: what was committed comes back byte for byte, whatever happens to the process, the
// file or the disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <random>

#include "dictionary/catalogue/accessors.h"
#include "host/state/stores.h"
#include "host/tables/row_cells.h"
#include "platform/config.h"
#include "platform/kob_platform.h"
#include "platform/nvram.h"
#include "tests/host/host_state.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"

namespace kobd::test
{
using namespace host;

namespace
{
const TableOps& UrlOps() { return *Table("FwUrlFilterTable").ops; }

int32_t AddUrl(const std::string& url)
{
    std::vector<char> row(Table("FwUrlFilterTable").row_size);
    int32_t index = 0;
    EXPECT_EQ(UrlOps().add(&index), 0);
    memcpy(row.data() + kRowIndexBytes, url.c_str(), url.size() + 1);
    EXPECT_EQ(UrlOps().set(index, row.data()), 0);
    return index;
}

// "1=a 4=b": indexes and addresses of the filter.
std::string Urls()
{
    std::string urls;
    for (const Row& row : FindList("FwUrlFilterTable")->rows.Rows())
        urls += std::to_string(IndexOf(row)) + "=" + (row.block.data() + kRowIndexBytes) + " ";
    return urls;
}

std::string HttpPort()
{
    char value[kValueBuffer] = "";
    EXPECT_EQ(WebHttpPortGet(value), 0);
    return value;
}

std::string Nvram(const char* key)
{
    char value[4096] = "left over";
    return nv_get(key, value, sizeof value) == 0 ? value : "unknown:" + std::string(value);
}

class StateTest : public HostState
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();  // else the folder would stay behind
        HostState::SetUp();
    }

    static std::string Sql(const std::string& sql) { return StateSql(StateFolder(), sql); }
    static size_t Asides()
    {
        const std::string aside = Path("kobd.db.damaged-");
        size_t count = 0;
        for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
            count += file.path().string().starts_with(aside) && !file.path().string().ends_with("-wal");
        return count;
    }

    // Writes the log back and closes the database, so that a test can damage the one file.
    static std::string WholeFile()
    {
        Sql("PRAGMA wal_checkpoint(TRUNCATE)");
        State()->Close();
        for (const char* behind : {"-wal", "-shm"}) unlink(Path(std::string("kobd.db") + behind).c_str());
        return FileText(Path("kobd.db"));
    }
    static void Write(const std::string& text) { std::ofstream(Path("kobd.db"), std::ios::binary) << text; }
};

TEST_F(StateTest, AnyBytesOfEveryKeptTableComeBack)
{
    std::mt19937 random(7);
    std::map<std::string, std::vector<std::vector<char>>> before;
    for (List& list : AllLists())
    {
        if (!list.kept) continue;
        const auto number = static_cast<size_t>(&list - AllLists().data());
        for (int i = 0; i < 3; ++i)
        {
            int32_t index = 0;
            if (ListAdd(number, &index) != 0) index = IndexOf(list.rows.Rows().back());
            std::vector<char> row(list.rows.RowSize());
            // All bytes, some bytes among zeros, and texts that fill their field to the last byte.
            for (char& byte : row)
                byte = i == 0 || (i == 1 && random() % 50 == 0) ? static_cast<char>(random())
                       : i == 2                                 ? static_cast<char>("a\n\\=#[] \r"[random() % 9])
                                                                : '\0';
            ASSERT_EQ(ListSet(number, index, row.data()), 0) << list.table;
        }
        for (const Row& row : list.rows.Rows()) before[list.table].push_back(row.block);
    }
    ASSERT_GT(before.size(), 70u);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    for (const List& list : AllLists())
    {
        if (!list.kept) continue;
        std::vector<std::vector<char>> now;
        for (const Row& row : list.rows.Rows()) now.push_back(row.block);
        EXPECT_EQ(now, before[list.table]) << list.table;
    }
    const std::string text = "\xE4\xB8\xAD\xFF\x01\n\\ end='\"; DROP TABLE objects; --";
    devHostNameSet(text.c_str());
    ASSERT_EQ(update_config(), 0);
    LoadState();
    char value[kValueBuffer];
    ASSERT_EQ(devHostNameGet(value), 0);
    EXPECT_EQ(value, text);
}

TEST_F(StateTest, EndOfALongerTextDoesNotStayBehindAShorterOne)
{
    const TableDef& users = Table("usersTable");
    std::vector<char> row(users.row_size);
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    const uint32_t password = FindColumn(*FindList("usersTable")->layout, "Password")->offset;
    for (const char* text : {"secret-of-old", "new"})
    {
        strcpy(row.data() + password, text);
        ASSERT_EQ(users.ops->set(1, row.data()), 0);
    }
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    EXPECT_EQ(std::string(row.data() + password, 256), "new" + std::string(253, '\0'));
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT value FROM cells WHERE list='usersTable' AND number=1 AND field IN ('', 'Password')"),
              "\nnew\n");
}

TEST_F(StateTest, CommittedIsKeptAndUncommittedIsLost)
{
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(UrlOps().setPPath(2, "Device.Parental."), 0);
    ASSERT_EQ(update_config(), 0);
    AddUrl("c.example.net");
    ASSERT_EQ(UrlOps().del(1), 0);
    LoadState();
    EXPECT_EQ(Urls(), "1=a.example.net 2=b.example.net ");
    EXPECT_EQ(FindList("FwUrlFilterTable")->rows.Find(2)->parent_path, "Device.Parental.");

    ASSERT_EQ(UrlOps().del(2), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(AddUrl("d.example.net"), 3) << "no index comes back over a restart either";

    for (const int32_t index : {1, 3}) ASSERT_EQ(UrlOps().del(index), 0);
    ASSERT_EQ(Table("DhcpStaticAddressTable").ops->del(1), 0);
    const TableOps& apns = *Table("ApnConfigTable").ops;  // counts from 0
    std::vector<char> apn(Table("ApnConfigTable").row_size);
    ASSERT_EQ(apns.get(0, apn.data()), 0);
    strcpy(apn.data() + FindColumn(*FindList("ApnConfigTable")->layout, "ApnName")->offset, "internet-one");
    ASSERT_EQ(apns.set(0, apn.data()), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(Urls(), "") << "an emptied list stays empty";
    EXPECT_TRUE(FindList("DhcpStaticAddressTable")->rows.Rows().empty()) << "of the factory's rows, too";
    std::vector<char> got(apn.size());
    ASSERT_EQ(apns.get(0, got.data()), 0);
    EXPECT_EQ(got, apn);
    EXPECT_EQ(FindList("ApnConfigTable")->rows.Rows().size(), 4u) << "the other rows are still the factory's";
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(StateTest, OnlyWhatChangedIsWritten)
{
    std::vector<char> row(Table("usersTable").row_size);
    ASSERT_EQ(Table("usersTable").ops->get(1, row.data()), 0);
    ASSERT_EQ(Table("usersTable").ops->set(1, row.data()), 0);
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM history"), "0\n") << "set to what it was";
    webHttpPortSet("8080");
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(update_config(), 0);
    webHttpPortSet("80");
    ASSERT_EQ(UrlOps().del(1), 0);
    wifiKey0Set("hidden-from-history");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT batch, kind, name, number, field, old, new FROM history ORDER BY id"),
              "1|object|webHttpPort|0||80|8080\n"
              "1|row|FwUrlFilterTable|1||NULL|\n1|row|FwUrlFilterTable|1|URL|NULL|a.example.net\n"
              "1|row|FwUrlFilterTable|2||NULL|\n1|row|FwUrlFilterTable|2|URL|NULL|b.example.net\n"
              "2|object|webHttpPort|0||8080|80\n2|object|wifiKey0|0||(secret)|(secret)\n"
              "2|row|FwUrlFilterTable|1|||NULL\n2|row|FwUrlFilterTable|1|URL|a.example.net|NULL\n");
    EXPECT_EQ(Sql("SELECT name FROM objects"), "wifiKey0\n") << "what is the factory's again is not kept";
    EXPECT_EQ(Sql("SELECT DISTINCT list FROM cells"), "FwUrlFilterTable\n") << "nor lists that are the factory's";

    Sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 10050)"
        " INSERT INTO history(id, batch) SELECT i, i FROM n");
    webHttpPortSet("8081");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*), max(batch) FROM history"), "10000|10051\n");
}

TEST_F(StateTest, WhatThisBuildDoesNotKnowOrHoldStaysInTheDatabase)
{
    AddUrl("a");
    ASSERT_EQ(update_config(), 0);
    Sql("INSERT INTO objects VALUES('newObject', '1');"
        "INSERT INTO lists VALUES('NewTable', 9); INSERT INTO cells VALUES('NewTable', 9, '', ''), ('NewTable', 9, "
        "'X', "
        "'1');"
        "INSERT INTO lists VALUES('SmsTable', 9); INSERT INTO cells VALUES('SmsTable', 9, '', '');"
        "INSERT INTO cells VALUES('FwUrlFilterTable', 1, 'Colour', 'red'), ('FwUrlFilterTable', -2, '', ''),"
        " ('FwUrlFilterTable', 99999999999, '', '')");
    {
        const OutputCapture output;
        LoadState();
        for (const char* said : {"no object newObject", "NewTable", "SmsTable", "no column Colour", "row -2 cannot be",
                                 "row 99999999999 cannot be"})
            EXPECT_NE(output.Text().find(said), std::string::npos) << said << " in " << output.Text();
    }
    EXPECT_EQ(FindList("SmsTable")->rows.Rows().size(), 4u) << "rows that nobody can set are the factory's";
    std::vector<char> row(Table("FwUrlFilterTable").row_size);
    strcpy(row.data() + kRowIndexBytes, "b");
    ASSERT_EQ(UrlOps().set(1, row.data()), 0);
    webHttpPortSet("8080");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM objects; SELECT count(*) FROM cells WHERE list LIKE '%mstable' OR list LIKE "
                  "'newtable'; SELECT value FROM cells WHERE field IN ('Colour', 'URL') ORDER BY field"),
              "2\n3\nred\nb\n");

    const struct
    {
        const char* list;
        const char* field;
        const char* value;
    } kCannot[] = {{"IpMacBindTable", "MAC", "00:00:5E:00:53"},
                   {"IpMacBindTable", "IP", "192.0.2.256"},
                   {"usersTable", "Enable", "yes"},
                   {"node_595Table", "MaxMTUSize", "-1"},
                   {"node_595Table", "MaxMTUSize", "99999999999"}};
    for (const auto& c : kCannot)
    {
        Sql(std::string("INSERT OR REPLACE INTO lists VALUES('") + c.list + "', 1);" +
            "INSERT OR REPLACE INTO cells VALUES('" + c.list + "', 1, '', ''), ('" + c.list + "', 1, '" + c.field +
            "', '" + c.value + "')");
        const OutputCapture output;
        LoadState();
        EXPECT_NE(output.Text().find(std::string("cannot hold the text of ") + c.field), std::string::npos) << c.value;
        EXPECT_EQ(FindList(c.list)->rows.Rows().size(), 1u);
    }
    EXPECT_EQ(HttpPort(), "8080");
}

// A store's value and the objects of one request become durable together.
TEST_F(StateTest, StoresAreSharedAndCommittedWithTheRequest)
{
    const struct
    {
        const char* key;
        std::string value;
        int result;
        const char* why;
    } kCases[] = {
        {"a", "1", 0, "a key that was not there"},
        {"eth_status", "1", 0, "over the factory's"},
        {"eth_status", "0", 0, "back to the factory's"},
        {"a", "", 0, "the empty text is a value"},
        {"cellular.roaming.enable", "a=b # c \\ \n\r\xFF", 0, "any text is a value"},
        {"longest", std::string(kStoreValueMax, 'x'), 0, "the longest value"},
        {"long", std::string(kStoreValueMax + 1, 'x'), -1, "one above"},
        {"", "1", -1, "no key"},
        {"a=b", "1", -1, "would be read as another at a terminal"},
        {"a\nb", "1", -1, "a line end"},
        {"a b", "1", -1, "a blank"},
    };
    for (const bool waits : {false, true})
        for (const auto& c : kCases)
        {
            StoresWait(waits);
            EXPECT_EQ(nvram_set(c.key, c.value.c_str()), c.result) << c.why;
            EXPECT_EQ(Nvram(c.key), c.result == 0 ? c.value : "unknown:") << c.why;
        }
    StoresWait(false);
    ASSERT_EQ(update_config(), 0);
    char value[8] = "1234567";
    EXPECT_EQ(nv_get("main_status", value, 4), 0) << "cut to the buffer";
    EXPECT_EQ(std::string(value, 8), std::string("con\0"
                                                 "567\0",
                                                 8));
    EXPECT_EQ(kob_set_config("a", "of config"), 0);
    EXPECT_EQ(Nvram("a"), "") << "two stores";

    StoresWait(true);
    ASSERT_EQ(nvram_set("a", "2"), 0);
    webHttpPortSet("8081");
    EXPECT_EQ(Sql("SELECT value FROM stores WHERE store='nvram' AND key='a'"), "\n") << "not yet";
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(DISTINCT batch) FROM history WHERE new IN ('2', '8081')"), "1\n");
    StoresWait(false);
    Sql("UPDATE stores SET value = 'of another process' WHERE store='nvram' AND key='a'");
    EXPECT_EQ(Nvram("a"), "of another process");
}

TEST_F(StateTest, ManyProcessesLoseNothingAndNobodyWaitsForLong)
{
    constexpr int kProcesses = 6;
    constexpr int kSets = 25;
    State()->Close();  // no connection crosses a fork
    std::vector<pid_t> setters;
    for (int process = 0; process < kProcesses; ++process)
    {
        setters.push_back(fork());
        if (setters.back() != 0) continue;
        int failed = 0;
        for (int i = 0; i < kSets; ++i)
            failed += nvram_set(("p" + std::to_string(process) + "." + std::to_string(i)).c_str(), "set") != 0;
        _exit(failed);
    }
    for (const pid_t setter : setters)
    {
        int status = 0;
        waitpid(setter, &status, 0);
        EXPECT_EQ(status, 0) << "a set failed";
    }
    EXPECT_EQ(Sql("SELECT count(*) FROM stores WHERE value = 'set'"), std::to_string(kProcesses * kSets) + "\n");

    sqlite3* stopped = nullptr;  // in the middle of a transaction
    ASSERT_EQ(sqlite3_open(Path("kobd.db").c_str(), &stopped), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(stopped, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const OutputCapture output;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(nvram_set("a", "1"), -1);
    webHttpPortSet("8081");
    EXPECT_EQ(update_config(), 14);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15)) << "two each, and a busy machine";
    EXPECT_NE(output.Text().find("another process has been writing it for two seconds"), std::string::npos);
    EXPECT_EQ(Nvram("a"), "unknown:") << "and reading waits for nobody";
    EXPECT_NE(WhyNotSaved(), "");
    sqlite3_close(stopped);
    EXPECT_EQ(update_config(), 0) << "caught up";
    EXPECT_EQ(WhyNotSaved(), "");
}

TEST_F(StateTest, KilledAtAnyMomentObjectsRowsAndStoresAreOfOneCommit)
{
    AddUrl("0");
    webHttpPortSet("0");
    ASSERT_EQ(update_config(), 0);
    std::mt19937 random(11);
    int last = 0;
    for (int round = 0; round < 40; ++round)
    {
        int committed[2];
        ASSERT_EQ(pipe2(committed, O_CLOEXEC), 0);
        State()->Close();
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            StoresWait(true);
            for (int number = last + 1;; ++number)
            {
                UrlOps().del(FindList("FwUrlFilterTable")->rows.LastIndex());
                AddUrl(std::to_string(number));
                webHttpPortSet(std::to_string(number).c_str());
                nvram_set("number", std::to_string(number).c_str());
                if (update_config() != 0 || write(committed[1], "", 1) != 1) _exit(1);
            }
        }
        // A disk may be slow: the time to the kill begins with the first commit.
        char byte = 0;
        close(committed[1]);
        ASSERT_EQ(read(committed[0], &byte, 1), 1) << "no commit failed";
        usleep(random() % 4000);
        kill(child, SIGKILL);
        close(committed[0]);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "no commit failed";
        LoadState();
        ASSERT_EQ(FindList("FwUrlFilterTable")->rows.Rows().size(), 1u);
        const Row& row = FindList("FwUrlFilterTable")->rows.Rows().front();
        ASSERT_STREQ(row.block.data() + kRowIndexBytes, HttpPort().c_str());
        ASSERT_EQ(Nvram("number"), HttpPort());
        EXPECT_GT(std::stoi(HttpPort()), last) << "nothing committed was lost";
        last = std::stoi(HttpPort());
    }
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(StateTest, ADamagedDatabaseIsKeptAsideAndTheFactoryServes)
{
    AddUrl("a.example.net");
    webHttpPortSet("8081");
    ASSERT_EQ(update_config(), 0);
    const std::string whole = WholeFile();
    std::vector<std::pair<std::string, std::string>> damaged = {
        {"noise", std::string(20000, 'n')}, {"a text", "webHttpPort=80\n"}, {"zeros", std::string(8192, '\0')}};
    for (size_t page = 4096; page < whole.size(); page += 4096)
        damaged.emplace_back("cut at " + std::to_string(page), whole.substr(0, page));
    damaged.emplace_back("cut in a page", whole.substr(0, 5000));
    damaged.emplace_back("noise behind the first page", whole.substr(0, 4096) + std::string(whole.size() - 4096, 'n'));
    damaged.emplace_back("a folder", "");
    for (const auto& [why, bytes] : damaged)
    {
        SCOPED_TRACE(why);
        State()->Close();
        Clear();
        if (why == "a folder")
            mkdir(Path("kobd.db").c_str(), 0700);
        else
            Write(bytes);
        const OutputCapture output;
        LoadState();
        EXPECT_EQ(Urls(), "");
        EXPECT_EQ(HttpPort(), "80");
        EXPECT_EQ(Asides(), 1u);
        EXPECT_NE(output.Text().find("is damaged, kept as " + Path("kobd.db.damaged-")), std::string::npos)
            << output.Text();
        webHttpPortSet("8082");
        EXPECT_EQ(update_config(), 0);
        LoadState();
        EXPECT_EQ(HttpPort(), "8082");
    }
    State()->Close();
    Clear();
    Write("");
    const OutputCapture output;
    LoadState();
    EXPECT_NE(output.Text().find("is empty, factory values serve"), std::string::npos) << output.Text();
    EXPECT_EQ(update_config(), 0);
}

// Whatever happens to the files while the daemon runs: it serves, tells, and the next commit that can be written has
// all that was committed before.
TEST_F(StateTest, FilesThatAreTakenAwayUnderTheDaemonAreMadeAgain)
{
    const std::pair<const char*, std::string> kWays[] = {
        {"the folder is removed", "rm -rf FOLDER"},
        {"the database is removed", "rm FOLDER/kobd.db"},
        {"another file has its name", "head -c 20000 /dev/urandom >FOLDER/x && mv FOLDER/x FOLDER/kobd.db"},
        {"an empty file has its name", "rm FOLDER/kobd.db* && touch FOLDER/kobd.db"},
        {"a folder has its name", "rm FOLDER/kobd.db* && mkdir FOLDER/kobd.db"},
    };
    for (const auto& [why, way] : kWays)
    {
        SCOPED_TRACE(why);
        Clear();
        LoadState();
        webHttpPortSet("8081");
        AddUrl("a.example.net");
        ASSERT_EQ(Table("usersTable").ops->del(2), 0);
        ASSERT_EQ(update_config(), 0);
        std::string command = way;
        for (size_t at; (at = command.find("FOLDER")) != std::string::npos;) command.replace(at, 6, StateFolder());
        ASSERT_EQ(system(command.c_str()), 0);
        const OutputCapture output;
        EXPECT_EQ(HttpPort(), "8081") << "it serves from memory";
        webHttpEnableSet("0");
        EXPECT_EQ(update_config(), 0) << output.Text();
        LoadState();
        EXPECT_EQ(HttpPort(), "8081");
        EXPECT_EQ(Urls(), "1=a.example.net ");
        EXPECT_EQ(FindList("usersTable")->rows.Rows().size(), 1u);
        EXPECT_EQ(FindList("DhcpStaticAddressTable")->rows.Rows().size(), 1u) << "of the factory";
    }
}

TEST_F(StateTest, WhatRootMakesInTheFolderOfAUserIsThatUsers)
{
    constexpr uid_t kUser = 65534;
    if (geteuid() != 0 || chown(StateFolder().c_str(), kUser, kUser) != 0) GTEST_SKIP() << "no second user here";
    State()->Close();
    Clear();
    EXPECT_EQ(nvram_set("a", "of root"), 0);
    for (const char* file : {"kobd.db", "kobd.db-wal", "kobd.db-shm"})
    {
        struct stat state = {};
        EXPECT_EQ(stat(Path(file).c_str(), &state), 0) << file;
        EXPECT_EQ(state.st_uid, kUser) << file;
        EXPECT_EQ(state.st_mode & 0777, 0600u) << "it holds passwords: " << file;
    }
    State()->Close();
    Clear();
    std::filesystem::create_symlink("/tmp/led-astray", Path("kobd.db"));
    const OutputCapture output;
    EXPECT_EQ(nvram_set("a", "through a link"), 0);
    EXPECT_FALSE(std::filesystem::exists("/tmp/led-astray")) << "a link of the user's leads root nowhere";
    EXPECT_EQ(chown(StateFolder().c_str(), 0, 0), 0);
}

TEST_F(StateTest, TheJournalIsMovedAsideWhenItIsLargeAndBothStayBounded)
{
    const std::string journal = StateFolder() + "/journal";
    const std::string line(100000, 'x');
    for (int number = 0; number < 35; ++number) Journal(std::to_string(number) + line);
    const auto kept = std::filesystem::file_size(journal) + std::filesystem::file_size(journal + ".1");
    EXPECT_GT(kept, 1u << 20) << "what happened last is there";
    EXPECT_LT(kept, (2u << 20) + line.size());
    EXPECT_EQ(FileText(journal).substr(0, 2), "33") << "a line is whole in one of the two";
}
}  // namespace
}  // namespace kobd::test
