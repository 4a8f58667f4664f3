// The state when something happens to it: other processes, kills, damaged and missing files, root in a user's folder.
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "host/state/stores.h"
#include "platform/config.h"
#include "tests/host/host_state.h"
#include "tests/host/in_child.h"

namespace kobd::test
{
namespace
{
using StateFaults = HostState;

int InFolder(const std::string& command) { return system(("cd " + StateFolder() + " && " + command).c_str()); }

// A store's value and the objects of one request become durable together.
TEST_F(StateFaults, StoresAreSharedAndCommittedWithTheRequest)
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
            StoresBeginRequest(0, waits);
            EXPECT_EQ(nvram_set(c.key, c.value.c_str()), c.result) << c.why;
            EXPECT_EQ(Nvram(c.key), c.result == 0 ? c.value : "unknown:") << c.why;
        }
    StoresEndRequest();
    ASSERT_EQ(update_config(), 0);
    char value[8] = "1234567";
    EXPECT_EQ(nv_get("main_status", value, 4), 0) << "cut to the buffer";
    EXPECT_EQ(std::string(value, 8), std::string("con\0", 4) + std::string("567\0", 4));
    EXPECT_EQ(kob_set_config("a", "of config"), 0);
    EXPECT_EQ(Nvram("a"), "") << "two stores";

    StoresBeginRequest(0, true);
    ASSERT_EQ(nvram_set("a", "2"), 0);
    webHttpPortSet("8081");
    AddUrl("3");
    Sql("CREATE TRIGGER failing BEFORE INSERT ON stores BEGIN SELECT RAISE(ABORT, 'no'); END");
    EXPECT_EQ(update_config(), 14);
    const char* batches = "SELECT count(DISTINCT batch), count(*) FROM history WHERE new IN ('2', '8081', '3')";
    EXPECT_EQ(Sql(batches) + Sql("SELECT * FROM objects; SELECT * FROM cells"), "0|0\n") << "all of it or nothing";
    Sql("DROP TRIGGER failing");
    EXPECT_EQ(update_config(), 0);
    EXPECT_EQ(Sql(batches), "1|3\n");
    StoresEndRequest();
    Sql("UPDATE stores SET value = 'of another process' WHERE store='nvram' AND key='a'");
    EXPECT_EQ(Nvram("a"), "of another process");
}

TEST_F(StateFaults, ManyProcessesLoseNothing)
{
    constexpr int kProcesses = 6;
    constexpr int kSets = 25;
    State()->Close();  // no connection crosses a fork
    for (int process = 0; process < kProcesses; ++process)
    {
        if (fork() != 0) continue;
        int failed = 0;
        for (int i = 0; i < kSets; ++i)
            failed += nvram_set(("p" + std::to_string(process) + "." + std::to_string(i)).c_str(), "set") != 0;
        _exit(failed);
    }
    for (int status = 0; wait(&status) > 0;) EXPECT_EQ(status, 0) << "a set failed";
    EXPECT_EQ(Sql("SELECT count(*) FROM stores WHERE value = 'set'"), std::to_string(kProcesses * kSets) + "\n");
}

TEST_F(StateFaults, AProcessThatStopsInATransactionMakesNobodyWaitForLong)
{
    const std::vector<Block> before = Rows("ApnConfigTable");
    const OutputCapture output;
    sqlite3* stopped = nullptr;
    ASSERT_EQ(sqlite3_open(Path("kobd.db").c_str(), &stopped), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(stopped, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(SetFields("ApnConfigTable", 0, {{"ApnEnable", "0"}, {"ApnName", "other"}}), 17);
    EXPECT_EQ(Rows("ApnConfigTable"), before) << "a row whose part in nvram cannot be written is not set";
    webHttpPortSet("8081");
    EXPECT_EQ(update_config(), 14);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(update_config(), 14);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15))
        << "two seconds once, a quarter each later";
    EXPECT_NE(output.Text().find("another process is writing it and has not ended in time"), std::string::npos);
    EXPECT_EQ(Nvram("eth_status"), "0") << "and reading waits for nobody";
    EXPECT_NE(WhyNotSaved(), "");
    sqlite3_close(stopped);
    EXPECT_EQ(update_config(), 0) << "caught up";
    EXPECT_EQ(WhyNotSaved(), "");
}

TEST_F(StateFaults, ADamagedDatabaseIsKeptAsideAndTheFactoryServes)
{
    for (const std::string way : {
             "head -c 20000 /dev/urandom >kobd.db",
             "echo webHttpPort=80 >kobd.db",
             "head -c 8192 /dev/zero >kobd.db",
             "truncate -s 4096 kobd.db",
             "truncate -s -4096 kobd.db",
             "truncate -s 5000 kobd.db",
             "dd if=/dev/urandom of=kobd.db bs=4096 seek=1 count=8 conv=notrunc status=none",
             "dd if=/dev/urandom of=kobd.db bs=1024 seek=3 count=1 conv=notrunc status=none",  // read after the objects
             "rm kobd.db && mkdir kobd.db",
             "truncate -s 0 kobd.db",
         })
    {
        SCOPED_TRACE(way);
        Empty();
        LoadState();
        AddUrl("a.example.net");
        webHttpPortSet("8080");
        ASSERT_EQ(update_config(), 0);
        Sql("PRAGMA wal_checkpoint(TRUNCATE)");
        State()->Close();
        ASSERT_EQ(InFolder("rm kobd.db-* && " + way), 0);
        const OutputCapture output;
        LoadState();
        const bool is_empty = way == "truncate -s 0 kobd.db";
        const std::string said =
            is_empty ? "empty, factory values serve" : "damaged, kept as " + Path("kobd.db.damaged-");
        EXPECT_NE(output.Text().find("kobd.db is " + said), std::string::npos);
        EXPECT_NE(FilesLike(Path("kobd.db.damaged-")) > 0, is_empty);
        EXPECT_EQ(Urls(), Texts());
        char port[64] = "";
        EXPECT_EQ(WebHttpPortGet(port), 0);
        EXPECT_STREQ(port, "80") << "nothing of a database that cannot be read whole";
        AddUrl("b.example.net");
        CommitAndLoad();
        EXPECT_EQ(Urls(), Texts{"b.example.net"});
    }
}

// A transaction that outgrows the cache writes pages before it ends. Given up, it must leave none to be written over
// what another process commits at the same place of the log.
TEST_F(StateFaults, WhatAFailedCommitHasWrittenIsNotWrittenAgain)
{
    LoadState();
    for (int pages = 240; pages < 248; ++pages)
    {
        SCOPED_TRACE(pages);
        Sql("PRAGMA wal_checkpoint(TRUNCATE)");
        const auto changes = [&]
        {
            for (int page = 0; page < pages; ++page)
                State()->Run("INSERT INTO stores VALUES('nvram', ?, ?)", std::to_string(page), std::string(900, 'x'));
            State()->Run("INSERT INTO nowhere VALUES(1)");
        };
        ASSERT_FALSE(State()->Write(changes));
        for (int page = 0; page < 100; ++page)
            Sql("INSERT OR REPLACE INTO stores VALUES('config', '" + std::to_string(page) + "', '" +
                std::string(900, 'y') + "')");
        EXPECT_EQ(Nvram("eth_status"), "0");
        ASSERT_EQ(Sql("PRAGMA integrity_check"), "ok\n");
        EXPECT_EQ(Sql("SELECT count(*) FROM stores"), "100\n");
    }
}

TEST_F(StateFaults, ADatabaseThatAnotherProcessIsMakingIsNotTakenForAnEmptiedOne)
{
    Empty();
    webHttpPortSet("8080");
    ASSERT_EQ(update_config(), 0);
    Sql("PRAGMA wal_checkpoint(TRUNCATE)");
    State()->Close();
    ASSERT_EQ(InFolder("rm kobd.db-*; mv kobd.db made; : >kobd.db; (sleep 0.2; cat made >kobd.db) &"), 0);
    const OutputCapture output;
    LoadState();
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(Object("webHttpPort"), "8080");
}

// Whatever happens to the files while the daemon runs: it serves, tells, and the next commit that can be written has
// all that was committed before.
TEST_F(StateFaults, FilesThatAreTakenAwayUnderTheDaemonAreMadeAgain)
{
    for (const std::string way : {
             "rm -r $PWD",
             "rm kobd.db",
             "head -c 20000 /dev/urandom >x && mv x kobd.db",
             "rm kobd.db* && touch kobd.db",
             "rm kobd.db* && mkdir kobd.db",
             ": >kobd.db",
         })
        for (const std::string meanwhile : {"nothing", "a store is read", "a store is set"})
        {
            SCOPED_TRACE(way + ", " + meanwhile);
            Empty();
            LoadState();
            webHttpPortSet("8081");
            AddUrl("a.example.net");
            ASSERT_EQ(Table("usersTable").ops->del(2), 0);
            ASSERT_EQ(update_config(), 0);
            ASSERT_EQ(InFolder(way), 0);
            const OutputCapture output;
            EXPECT_EQ(Object("webHttpPort"), "8081") << "it serves from memory";
            EXPECT_TRUE(meanwhile != "a store is read" || Nvram("eth_status") == "0");
            EXPECT_TRUE(meanwhile != "a store is set" || nvram_set("eth_status", "1") == 0);
            webHttpEnableSet("0");
            CommitAndLoad();
            EXPECT_EQ(Object("webHttpPort"), "8081");
            EXPECT_EQ(Urls(), Texts{"a.example.net"});
            EXPECT_EQ(Rows("usersTable").size(), 1u);
            EXPECT_EQ(Rows("DhcpStaticAddressTable").size(), 1u) << "of the factory";
        }
}

TEST_F(StateFaults, WhatRootMakesInTheFolderOfAUserIsThatUsers)
{
    Empty();
    if (geteuid() != 0 || chown(StateFolder().c_str(), kNobody, kNobody) != 0) GTEST_SKIP() << "no second user here";
    EXPECT_EQ(nvram_set("a", "of root"), 0);
    for (const char* file : {"kobd.db", "kobd.db-wal", "kobd.db-shm"})
    {
        struct stat state = {};
        EXPECT_EQ(stat(Path(file).c_str(), &state), 0) << file;
        EXPECT_EQ(state.st_uid, kNobody) << file;
        EXPECT_EQ(state.st_mode & 0777, 0600u) << "it holds passwords: " << file;
    }
    State()->Close();
    std::filesystem::remove(Path("kobd.db"));
    std::filesystem::create_symlink(Path("astray"), Path("kobd.db"));
    const OutputCapture output;
    EXPECT_EQ(nvram_set("a", "through a link"), 0);
    EXPECT_FALSE(std::filesystem::exists(Path("astray"))) << "a link of the user's leads root nowhere";
}

TEST_F(StateFaults, TheJournalIsMovedAsideWhenItIsLargeAndBothStayBounded)
{
    const std::string line(100000, 'x');
    for (int number = 0; number < 35; ++number) Journal(std::to_string(number) + line);
    const size_t kept = FileText(Path("journal")).size() + FileText(Path("journal.1")).size();
    EXPECT_GT(kept, 1u << 20) << "what happened last is there";
    EXPECT_LT(kept, (2u << 20) + line.size());
    EXPECT_EQ(FileText(Path("journal")).substr(0, 2), "33") << "a line is whole in one of the two";
}
}  // namespace
}  // namespace kobd::test
